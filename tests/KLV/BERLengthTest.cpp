#include "Vellum/KLV/BERLength.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Vellum::DataIO::Memory::MemoryDataSink;
using Vellum::DataIO::Memory::MemoryDataSource;
using Vellum::KLV::BERLength;
using Bytes = std::vector<std::uint8_t>;

struct Encoding {
    const char* name;
    std::uint64_t value;
    std::uint8_t octets;
    Bytes bytes;
};
VELLUM_PRINT_CASE_NAME(Encoding)

class BERRoundTrip : public ::testing::TestWithParam<Encoding> {};

TEST_P(BERRoundTrip, EncodesAndDecodesExactly) {
    const auto& c = GetParam();
    MemoryDataSink sink;
    BERLength(c.value, c.octets).write(sink);
    EXPECT_EQ(Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()), c.bytes);
    MemoryDataSource source(c.bytes.data(), c.bytes.size());
    const BERLength decoded = BERLength::read(source);
    EXPECT_EQ(decoded.value(), c.value);
    EXPECT_EQ(decoded.octets(), c.octets);
    EXPECT_EQ(source.remaining(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BERRoundTrip,
    ::testing::Values(Encoding{"shortZero", 0, 1, {0x00}}, Encoding{"shortMax", 127, 1, {0x7F}},
                      Encoding{"longOne", 128, 2, {0x81, 0x80}},
                      Encoding{"longPaddedZero", 0, 4, {0x83, 0x00, 0x00, 0x00}},
                      Encoding{"fourOctets", 0x123456, 4, {0x83, 0x12, 0x34, 0x56}},
                      Encoding{"eightOctetsCommon", 72, 9, {0x88, 0, 0, 0, 0, 0, 0, 0, 72}},
                      Encoding{"nineOctetsMax",
                               0xFFFFFFFFFFFFFFFFULL,
                               9,
                               {0x88, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}}),
    [](const auto& p) { return p.param.name; });

TEST(BERLength, MinimalOctets) {
    EXPECT_EQ(BERLength::minimalOctets(0), 1);
    EXPECT_EQ(BERLength::minimalOctets(127), 1);
    EXPECT_EQ(BERLength::minimalOctets(128), 2);
    EXPECT_EQ(BERLength::minimalOctets(255), 2);
    EXPECT_EQ(BERLength::minimalOctets(256), 3);
    EXPECT_EQ(BERLength::minimalOctets(0xFFFFFFFFFFFFFFFFULL), 9);
    EXPECT_EQ(BERLength(300).octets(), 3);
}

TEST(BERLength, RefusesValuesThatDoNotFit) {
    EXPECT_THROW(BERLength(128, 1), Vellum::Exceptions::InvalidLength);
    EXPECT_THROW(BERLength(256, 2), Vellum::Exceptions::InvalidLength);
    EXPECT_THROW(BERLength(1, 0), Vellum::Exceptions::InvalidLength);
    EXPECT_THROW(BERLength(1, 10), Vellum::Exceptions::InvalidLength);
}

struct Malformed {
    const char* name;
    Bytes bytes;
    const char* kind;
    const char* messagePart;
};
VELLUM_PRINT_CASE_NAME(Malformed)

class BERMalformed : public ::testing::TestWithParam<Malformed> {};

TEST_P(BERMalformed, IsRefusedNamingTheOffset) {
    const auto& c = GetParam();
    MemoryDataSource source(c.bytes.data(), c.bytes.size(), 4096);
    EXPECT_TRUE(VellumTest::throwsNamed([&] { BERLength::read(source); }, c.kind, c.messagePart));
}

INSTANTIATE_TEST_SUITE_P(
    Fields, BERMalformed,
    ::testing::Values(
        Malformed{"empty", {}, "InvalidLength", "at offset 4096"},
        Malformed{
            "indefinite", {0x80}, "InvalidFormat", "indefinite BER length (0x80) at offset 4096"},
        Malformed{"tenOctets", {0x89, 1, 2, 3, 4, 5, 6, 7, 8, 9}, "InvalidFormat", "has 10 octets"},
        Malformed{"truncatedLong", {0x83, 0x00, 0x01}, "InvalidLength", "at offset 4097"},
        Malformed{"truncatedNine", {0x88, 0x10}, "InvalidLength", "needs 8 bytes"}),
    [](const auto& p) { return p.param.name; });

} // namespace
