#include "Vellum/DataIO/Memory/MemoryDataSink.h"

#include "Vellum/Exceptions/InvalidLength.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Vellum::DataIO::Memory::MemoryDataSink;

TEST(MemoryDataSink, WritesBigEndianIntegers) {
    MemoryDataSink sink;
    sink.writeUInt8(0x01);
    sink.writeUInt16(0x0203);
    sink.writeUInt32(0x04050607U);
    sink.writeUInt64(0x08090A0B0C0D0E0FULL);
    const std::vector<std::uint8_t> expected = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    ASSERT_EQ(sink.serializedSize(), expected.size());
    EXPECT_EQ(std::vector<std::uint8_t>(sink.rawBuffer(), sink.rawBuffer() + 15), expected);
    EXPECT_EQ(sink.release(), expected);
    EXPECT_EQ(sink.serializedSize(), 0U);
}

TEST(MemoryDataSink, FixedCapacityRefusesOverflowWithoutWriting) {
    MemoryDataSink sink(3);
    sink.writeUInt16(0xABCD);
    EXPECT_THROW(sink.writeUInt16(0x1234), Vellum::Exceptions::InvalidLength);
    EXPECT_EQ(sink.serializedSize(), 2U);
    sink.writeUInt8(0xEF);
    EXPECT_EQ(sink.position(), 3U);
    EXPECT_THROW(sink.writeUInt8(0), Vellum::Exceptions::InvalidLength);
}

} // namespace
