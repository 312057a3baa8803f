#include "Vellum/Types/Timestamp.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "TypesTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"

#include <gtest/gtest.h>

namespace {

using namespace VellumTypesTest;
using Vellum::Types::Timestamp;

struct Millis {
    std::uint16_t milliseconds;
    std::uint8_t stored;
};
VELLUM_PRINT_CASE(Millis, c.milliseconds << " ms")

class TimestampMilliseconds : public ::testing::TestWithParam<Millis> {};

TEST_P(TimestampMilliseconds, AreStoredDividedByFour) {
    const Millis& m = GetParam();
    const Timestamp t(2024, 2, 29, 23, 59, 58, m.milliseconds);
    EXPECT_EQ(t.milliSecond(), m.stored);
    EXPECT_EQ(serialized(t), (Bytes{0x07, 0xE8, 2, 29, 23, 59, 58, m.stored}));
}

INSTANTIATE_TEST_SUITE_P(Values, TimestampMilliseconds,
                         ::testing::Values(Millis{0, 0}, Millis{3, 0}, Millis{4, 1},
                                           Millis{1000, 250}, Millis{1023, 255}));

TEST(Timestamp, StoredCountTimesFourRebuildsTheSameBytes) {
    // The text form carries milliSecond() and is read back as milliseconds (times 4).
    for (unsigned stored = 0; stored < 256; ++stored) {
        const Bytes bytes{0, 0, 0, 0, 0, 0, 0, static_cast<std::uint8_t>(stored)};
        const Timestamp read = Timestamp::fromBytes({bytes.data(), bytes.size()});
        const Timestamp rebuilt(read.year(), read.month(), read.day(), read.hour(), read.minute(),
                                read.second(), static_cast<std::uint16_t>(read.milliSecond() * 4));
        ASSERT_EQ(serialized(rebuilt), bytes);
    }
}

TEST(Timestamp, MillisecondsBeyondOneByteThrow) {
    EXPECT_THROW_MSG_HAS(Timestamp(2024, 1, 1, 0, 0, 0, 1024), InvalidFormat,
                         "milliseconds 1024 exceed 1023");
}

} // namespace
