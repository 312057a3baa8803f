#include "Vellum/DataIO/Memory/MemoryDataSource.h"

#include "Support/ExpectThrow.h"

#include "Vellum/Exceptions/InvalidLength.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace {

using Vellum::DataIO::Memory::MemoryDataSource;
using Vellum::Exceptions::InvalidLength;

const std::vector<std::uint8_t> bytes = {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08,
                                         0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F};

TEST(MemoryDataSource, ReadsBigEndianIntegers) {
    MemoryDataSource source(bytes.data(), bytes.size());
    EXPECT_EQ(source.readUInt8(), 0x01);
    EXPECT_EQ(source.readUInt16(), 0x0203);
    EXPECT_EQ(source.readUInt32(), 0x04050607U);
    EXPECT_EQ(source.readUInt64(), 0x08090A0B0C0D0E0FULL);
    EXPECT_EQ(source.remaining(), 0U);
}

TEST(MemoryDataSource, PositionsAreAbsolute) {
    MemoryDataSource source(bytes.data(), bytes.size(), 1000);
    EXPECT_EQ(source.position(), 1000U);
    source.skip(4);
    EXPECT_EQ(source.position(), 1004U);
    source.seek(1014);
    EXPECT_EQ(source.readUInt8(), 0x0F);
    source.seek(1015); // the end itself is a valid position
    EXPECT_EQ(source.remaining(), 0U);
    EXPECT_THROW(source.seek(1016), InvalidLength);
    EXPECT_THROW(source.seek(999), InvalidLength);
}

TEST(MemoryDataSource, RefusesToReadPastTheEndAndNamesTheOffset) {
    MemoryDataSource source(bytes.data(), bytes.size(), 500);
    source.skip(13);
    EXPECT_THROW_MSG(source.readUInt32(), InvalidLength,
                     "read needs 4 bytes at offset 513, but only 2 remain");
    EXPECT_EQ(source.position(), 513U) << "a refused read consumes nothing";
    EXPECT_EQ(source.readUInt16(), 0x0E0F);
}

TEST(MemoryDataSource, HugeCountsDoNotWrap) {
    MemoryDataSource source(bytes.data(), bytes.size());
    source.skip(1);
    const auto huge = std::numeric_limits<std::uint64_t>::max();
    EXPECT_THROW(source.skip(huge), InvalidLength);
    EXPECT_THROW(source.take(huge), InvalidLength);
    EXPECT_THROW(source.seek(huge), InvalidLength);
}

TEST(MemoryDataSource, TakeGivesViewsWithoutCopying) {
    MemoryDataSource source(bytes.data(), bytes.size());
    const auto first = source.take(3);
    EXPECT_EQ(first.begin(), bytes.data());
    EXPECT_EQ(first.size(), 3U);
    EXPECT_EQ(source.rest().size(), 12U);
    EXPECT_EQ(first.sub(1, 2).begin(), bytes.data() + 1);
    EXPECT_THROW(first.sub(2, 2), InvalidLength);
    EXPECT_THROW(first.sub(4, 0), InvalidLength);
}

TEST(MemoryDataSource, EmptyAndNullSourcesHaveNothing) {
    MemoryDataSource empty(nullptr, 10);
    EXPECT_EQ(empty.remaining(), 0U);
    EXPECT_THROW(empty.readUInt8(), InvalidLength);
}

} // namespace
