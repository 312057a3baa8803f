#include "Vellum/KLV/TripletReader.h"

#include "Metadata/HeaderMetadataBytes.h"
#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"

#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/Exceptions/InvalidLength.h"

#include <gtest/gtest.h>

namespace {

using namespace VellumTest;
using Vellum::DataIO::Memory::MemoryDataSource;
using Vellum::KLV::TripletReader;

Bytes triplet(const Bytes& lengthField, std::size_t valueSize) {
    Bytes out = fillKey;
    out.insert(out.end(), lengthField.begin(), lengthField.end());
    out.insert(out.end(), valueSize, 0xAA);
    return out;
}

TEST(TripletReader, WalksConsecutiveTriplets) {
    const Bytes data = concat(
        {triplet({0x03}, 3), triplet({0x83, 0x00, 0x00, 0x00}, 0), triplet({0x81, 0x80}, 128)});
    MemoryDataSource source(data.data(), data.size(), 10);
    TripletReader reader(source);
    std::vector<std::uint64_t> offsets;
    while (auto t = reader.next()) {
        offsets.push_back(t->offset);
        EXPECT_TRUE(t->key.isSMPTELabel());
    }
    EXPECT_EQ(offsets, (std::vector<std::uint64_t>{10, 30, 50}));
}

TEST(TripletReader, TakesAnyKeyWhoseLengthFits) {
    // AUID-style keys (first byte 0x80) as some editing systems write them.
    Bytes data(16, 0x80);
    data.push_back(0x02);
    data.insert(data.end(), {0x01, 0x02});
    MemoryDataSource source(data.data(), data.size());
    TripletReader reader(source);
    const auto t = reader.next();
    ASSERT_TRUE(t);
    EXPECT_FALSE(t->key.isSMPTELabel());
    EXPECT_EQ(t->length.value(), 2U);
    EXPECT_FALSE(reader.next());
}

TEST(TripletReader, LeavesTheSourceAtTheValue) {
    const Bytes data = triplet({0x02}, 2);
    MemoryDataSource source(data.data(), data.size());
    TripletReader reader(source);
    const auto t = reader.next();
    ASSERT_TRUE(t);
    EXPECT_EQ(source.position(), t->valueOffset());
    EXPECT_EQ(t->endOffset(), data.size());
    EXPECT_EQ(source.readUInt16(), 0xAAAA);
    EXPECT_FALSE(reader.next());
}

struct Broken {
    const char* name;
    Bytes data;
    const char* messagePart; // of the InvalidLength thrown
};
VELLUM_PRINT_CASE_NAME(Broken)

class TripletReaderBroken : public ::testing::TestWithParam<Broken> {};

TEST_P(TripletReaderBroken, StopsWithAnErrorNamingTheOffset) {
    const auto& c = GetParam();
    MemoryDataSource source(c.data.data(), c.data.size());
    TripletReader reader(source);
    EXPECT_THROW_MSG_HAS(while (reader.next()){}, InvalidLength, c.messagePart);
}

INSTANTIATE_TEST_SUITE_P(
    Data, TripletReaderBroken,
    ::testing::Values(Broken{"truncatedValue", concat({triplet({0x01}, 1), triplet({0x10}, 4)}),
                             "triplet at offset 18 claims 16 bytes, but only 4 remain"},
                      Broken{"truncatedKey", Bytes(fillKey.begin(), fillKey.begin() + 9),
                             "key needs 16 bytes at offset 0"},
                      Broken{"hugeLength", triplet({0x88, 0x10, 0, 0, 0, 0, 0, 0, 0}, 8),
                             "claims 1152921504606846976 bytes"},
                      Broken{"garbageAfterATriplet", concat({triplet({0x00}, 0), Bytes(20, 0x20)}),
                             "triplet at offset 17 claims 32 bytes, but only 3 remain"}),
    [](const auto& p) { return p.param.name; });

} // namespace
