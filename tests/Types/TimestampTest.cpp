#include "Vellum/Types/Timestamp.h"

#include "Support/ExpectThrow.h"
#include "TypesTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"

#include <gtest/gtest.h>

namespace {

using namespace VellumTypesTest;
using Vellum::Types::Timestamp;

TEST(Timestamp, MillisecondsAreStoredDividedByFour) {
    // The stored count is milliseconds / 4; the text form carries milliSecond() and is read
    // back as milliseconds (times 4), which must rebuild the same bytes.
    for (unsigned stored = 0; stored < 256; ++stored) {
        const Bytes bytes{0x07, 0xE8, 2, 29, 23, 59, 58, static_cast<std::uint8_t>(stored)};
        const Timestamp read = Timestamp::fromBytes({bytes.data(), bytes.size()});
        ASSERT_EQ(read.milliSecond(), stored);
        for (unsigned remainder = 0; remainder < 4; ++remainder) {
            const Timestamp t(read.year(), read.month(), read.day(), read.hour(), read.minute(),
                              read.second(), static_cast<std::uint16_t>(stored * 4 + remainder));
            ASSERT_EQ(t.milliSecond(), stored) << remainder;
            ASSERT_EQ(serialized(t), bytes) << remainder;
        }
    }
}

TEST(Timestamp, MillisecondsBeyondOneByteThrow) {
    EXPECT_THROW_MSG_HAS(Timestamp(2024, 1, 1, 0, 0, 0, 1024), InvalidFormat,
                         "milliseconds 1024 exceed 1023");
}

} // namespace
