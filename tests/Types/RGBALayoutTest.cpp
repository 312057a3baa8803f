#include "Vellum/Types/RGBALayout.h"

#include "Support/ExpectThrow.h"
#include "TypesTestSupport.h"

#include "Vellum/Exceptions/InvalidLength.h"

#include <gtest/gtest.h>

namespace {

using namespace VellumTypesTest;
using Vellum::Exceptions::InvalidLength;
using Vellum::Types::RGBALayout;

TEST(RGBALayout, SlotsMapToBytePairs) {
    RGBALayout layout;
    layout.set(0, {'R', 10});
    layout.set(7, {'A', 2});
    EXPECT_EQ(layout.get(7).code, 'A');
    EXPECT_EQ(layout.get(7).depth, 2);
    EXPECT_EQ(layout.get(3).code, 0);
    EXPECT_EQ(serialized(layout), (Bytes{'R', 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 'A', 2}));
}

TEST(RGBALayout, IndexBeyondTheEightSlotsThrows) {
    RGBALayout layout;
    EXPECT_THROW_MSG_HAS(layout.set(8, {'R', 8}), InvalidLength, "index 8 is outside the 8");
    EXPECT_THROW_MSG_HAS(layout.get(1000), InvalidLength, "index 1000");
    EXPECT_EQ(serialized(layout), Bytes(16, 0));
}

} // namespace
