#include "Vellum/Types/Collection.h"

#include "Support/ExpectThrow.h"
#include "TypesTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Types/Array.h"
#include "Vellum/Types/Batch.h"
#include "Vellum/Types/DataStream.h"
#include "Vellum/Types/UInt16.h"
#include "Vellum/Types/UInt32.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {

using namespace VellumTypesTest;
using Vellum::Exceptions::InvalidFormat;
using Vellum::Exceptions::InvalidLength;
using Vellum::Types::Array;
using Vellum::Types::Batch;
using Vellum::Types::DataStream;
using Vellum::Types::UInt16;
using Vellum::Types::UInt32;

Batch batchOf(std::initializer_list<std::uint16_t> values) {
    Batch batch(2, Id::UInt16);
    for (const std::uint16_t v : values) {
        batch.append(std::make_unique<UInt16>(v));
    }
    return batch;
}

TEST(Collection, SerialisesCountSizeAndItems) {
    const Batch batch = batchOf({1, 0x0203});
    EXPECT_EQ(batch.size(), 2U);
    EXPECT_EQ(batch.serializedSize(), 12U);
    EXPECT_EQ(serialized(batch), (Bytes{0, 0, 0, 2, 0, 0, 0, 2, 0, 1, 2, 3}));
    EXPECT_EQ(serialized(Array(16, Id::UUID)), (Bytes{0, 0, 0, 0, 0, 0, 0, 16}));
}

TEST(Collection, AppendChecksTypeAndSize) {
    Batch batch(2, Id::UInt16);
    EXPECT_THROW_MSG_HAS(batch.append(std::make_unique<UInt32>(1)), InvalidFormat,
                         "Batch of UInt16 cannot take an item of UInt32");
    EXPECT_THROW_MSG_HAS(batch.append(nullptr), InvalidFormat, "no item");

    Array streams(3, Id::DataStream);
    const Bytes three{1, 2, 3};
    streams.append(std::make_unique<DataStream>(three.data(), 3));
    EXPECT_THROW_MSG_HAS(streams.append(std::make_unique<DataStream>(three.data(), 2)),
                         InvalidLength, "items of 3 bytes, not 2");
    EXPECT_EQ(streams.size(), 1U);
    EXPECT_EQ(batch.size(), 0U);

    Batch sizeless(0, Id::UInt16);
    sizeless.append(std::make_unique<UInt16>(7));
    EXPECT_EQ(sizeless.itemSize(), 2U) << "the first item sets the size";
}

TEST(Collection, ConstructorChecksItemType) {
    EXPECT_THROW_MSG_HAS(Batch(4, Id::UInt16), InvalidLength, "2 bytes, not 4");
    EXPECT_THROW_MSG_HAS(Array(4, Id::Float), InvalidFormat, "no value class");
    EXPECT_THROW_MSG_HAS(Array(4, Id::Batch), InvalidFormat, "no value class");
}

TEST(Collection, IndexIsChecked) {
    Batch batch = batchOf({7});
    EXPECT_EQ(dynamic_cast<const UInt16&>(std::as_const(batch).at(0)).value(), 7);
    EXPECT_THROW_MSG_HAS(std::as_const(batch).at(1), InvalidLength, "index 1 is past its 1");
    EXPECT_THROW_MSG_HAS(batch.at(0xFFFFFFFFU), InvalidLength, "index 4294967295");
    EXPECT_THROW_MSG_HAS(Array(1, Id::UInt8).at(0), InvalidLength, "past its 0 items");
}

TEST(Collection, CloneIsDeep) {
    Batch original = batchOf({1, 2});
    const auto copy = original.clone();
    ASSERT_EQ(copy->identifier(), Id::Batch);
    dynamic_cast<UInt16&>(copy->at(0)).setValue(99);
    EXPECT_EQ(dynamic_cast<const UInt16&>(original.at(0)).value(), 1);
    EXPECT_NE(&copy->at(1), &original.at(1));
    EXPECT_EQ(serialized(*copy), (Bytes{0, 0, 0, 2, 0, 0, 0, 2, 0, 99, 0, 2}));

    const auto arrayCopy = Array(2, Id::UInt16).clone();
    EXPECT_EQ(arrayCopy->identifier(), Id::Array);
    EXPECT_EQ(arrayCopy->itemSize(), 2U);
}

} // namespace
