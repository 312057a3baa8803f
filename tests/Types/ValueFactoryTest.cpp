#include "Vellum/Types/Factories/ValueFactory.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "TypesTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Types/Boolean.h"
#include "Vellum/Types/ISO7String.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace VellumTypesTest;
using Vellum::DataIO::Slice;
using Vellum::Exceptions::InvalidFormat;
using Vellum::Exceptions::InvalidLength;
using Vellum::Types::Factories::ValueFactory;

Slice slice(const Bytes& bytes) {
    return {bytes.data(), bytes.size()};
}

class BytesRoundTrip : public ::testing::TestWithParam<Sample> {};

TEST_P(BytesRoundTrip, WritesBackExactlyTheBytesItWasBuiltFrom) {
    const Sample& s = GetParam();
    const auto value = ValueFactory::create(s.type, slice(s.bytes));
    ASSERT_TRUE(value);
    EXPECT_EQ(value->identifier(), s.type);
    EXPECT_EQ(value->rawBuffer(), s.bytes);
    EXPECT_EQ(serialized(*value), s.bytes);
    EXPECT_EQ(value->serializedSize(), s.bytes.size());

    const auto copy = value->clone();
    EXPECT_NE(copy.get(), value.get());
    EXPECT_EQ(copy->identifier(), s.type);
    EXPECT_EQ(copy->rawBuffer(), s.bytes);
}

INSTANTIATE_TEST_SUITE_P(EveryType, BytesRoundTrip, ::testing::ValuesIn(samples()),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(ValueFactory, SamplesCoverEveryTypeWithAValueClass) {
    for (unsigned n = 0; Id::isValid(n); ++n) {
        const auto type = static_cast<Id::Identifier>(n);
        bool covered = false;
        for (const Sample& s : samples()) {
            covered = covered || s.type == type;
        }
        EXPECT_EQ(covered, ValueFactory::hasValueClass(type)) << Id::typeName(type);
    }
}

// The accessors the value text does not show (ValueText.EveryValueTypeHasItsTextForm checks
// the others through the text of every sample).
TEST(ValueFactory, AccessorsKeepTheStoredForm) {
    const Bytes boolean = {0x02};
    const auto flag = ValueFactory::create(Id::Boolean, slice(boolean));
    EXPECT_EQ(dynamic_cast<const Vellum::Types::Boolean&>(*flag).storedByte(), 0x02);
    const Bytes text = {'a', 'b', 0, 'c'};
    const auto iso = ValueFactory::create(Id::ISO7String, slice(text));
    EXPECT_EQ(dynamic_cast<const Vellum::Types::ISO7String&>(*iso).value(), "ab");
    EXPECT_EQ(dynamic_cast<const Vellum::Types::ISO7String&>(*iso).storedBytes(),
              std::string("ab\0c", 4));
}

TEST(ValueFactory, RejectsByteCountsThatDoNotFitTheType) {
    for (unsigned n = 0; Id::isValid(n); ++n) {
        const auto type = static_cast<Id::Identifier>(n);
        const auto size = Id::typeSize(type);
        if (!ValueFactory::hasValueClass(type) || !size) {
            continue;
        }
        for (const std::uint32_t wrong : {0U, *size - 1, *size + 1}) {
            SCOPED_TRACE(std::string(Id::typeName(type)) + " of " + std::to_string(wrong));
            const Bytes bytes(wrong, 0x11);
            EXPECT_THROW_MSG_HAS(ValueFactory::create(type, slice(bytes)), InvalidLength,
                                 Id::typeName(type));
        }
    }
}

struct BadValue {
    const char* name;
    Id::Identifier type;
    Bytes bytes;
    const char* error; // the kind of exception
    const char* fragment;
};
VELLUM_PRINT_CASE_NAME(BadValue)

class BadValues : public ::testing::TestWithParam<BadValue> {};

TEST_P(BadValues, ThrowNamingTheFault) {
    const BadValue& c = GetParam();
    EXPECT_TRUE(VellumTest::throwsNamed([&] { ValueFactory::create(c.type, slice(c.bytes)); },
                                        c.error, c.fragment));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadValues,
    ::testing::Values(
        BadValue{"OddUTF16",
                 Id::UTF16String,
                 {0, 'a', 0},
                 "InvalidLength",
                 "even number of bytes, not 3"},
        BadValue{"ShortCodingStyle",
                 Id::J2KCodingStyleDefault,
                 {1, 2, 3, 4},
                 "InvalidLength",
                 "at least 5 bytes, got 4"},
        BadValue{
            "EmptyQuantisation", Id::J2KQuantisationDefault, {}, "InvalidLength", "at least 1"},
        BadValue{"Float", Id::Float, {0, 0, 0, 0}, "InvalidFormat", "Float (type number 4)"},
        BadValue{"Indirect", Id::Indirect, {}, "InvalidFormat", "no value class"},
        BadValue{"BatchKind", Id::Batch, Bytes(8), "InvalidFormat", "Batch (type number 0)"},
        BadValue{
            "OutOfRange", static_cast<Id::Identifier>(40), {}, "InvalidFormat", "type number 40"}),
    [](const auto& p) { return std::string(p.param.name); });

struct CollectionBytes {
    const char* name;
    Id::Identifier kind;
    Id::Identifier itemType;
    Bytes bytes;
    std::uint32_t count;
};
VELLUM_PRINT_CASE_NAME(CollectionBytes)

class CollectionRoundTrip : public ::testing::TestWithParam<CollectionBytes> {};

TEST_P(CollectionRoundTrip, WritesBackExactly) {
    const CollectionBytes& c = GetParam();
    const auto collection = ValueFactory::createCollection(c.kind, c.itemType, slice(c.bytes));
    EXPECT_EQ(collection->identifier(), c.kind);
    EXPECT_EQ(collection->itemType(), c.itemType);
    EXPECT_EQ(collection->size(), c.count);
    EXPECT_EQ(collection->serializedSize(), c.bytes.size());
    EXPECT_EQ(serialized(*collection), c.bytes);
    for (std::uint32_t i = 0; i < collection->size(); ++i) {
        EXPECT_EQ(collection->at(i).identifier(), c.itemType);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Forms, CollectionRoundTrip,
    ::testing::Values(
        CollectionBytes{"BatchOfUInt16", Id::Batch, Id::UInt16, collection(2, 2, {0, 1, 0, 23}), 2},
        CollectionBytes{"EmptyArrayOfUUID", Id::Array, Id::UUID, collection(0, 16, {}), 0},
        CollectionBytes{"EmptyWithZeroSize", Id::Batch, Id::DataStream, collection(0, 0, {}), 0},
        CollectionBytes{"EmptyFixedSizeWithZeroSize", Id::Batch, Id::UniversalLabel,
                        collection(0, 0, {}), 0},
        CollectionBytes{"ArrayOfUTF16Strings", Id::Array, Id::UTF16String,
                        collection(2, 4, {0, 'a', 0, 0, 0, 'b', 0, 'c'}), 2},
        CollectionBytes{"BatchOfWeakReferences", Id::Batch, Id::WeakReference,
                        collection(1, 16, counting(16, 1)), 1}),
    [](const auto& p) { return std::string(p.param.name); });

struct BadCollection {
    const char* name;
    Id::Identifier kind;
    Id::Identifier itemType;
    Bytes bytes;
    const char* error; // the kind of exception
    const char* fragment;
};
VELLUM_PRINT_CASE_NAME(BadCollection)

class BadCollections : public ::testing::TestWithParam<BadCollection> {};

TEST_P(BadCollections, ThrowNamingTheCounts) {
    const BadCollection& c = GetParam();
    EXPECT_TRUE(VellumTest::throwsNamed(
        [&] { ValueFactory::createCollection(c.kind, c.itemType, slice(c.bytes)); }, c.error,
        c.fragment));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadCollections,
    ::testing::Values(
        BadCollection{"ShortHeader", Id::Batch, Id::UInt8, Bytes(7, 0), "InvalidLength",
                      "8-byte header (item count, item size), got 7 bytes"},
        BadCollection{"EmptyBuffer", Id::Array, Id::UInt8, Bytes(), "InvalidLength", "got 0 bytes"},
        BadCollection{"ItemsOverrunBuffer", Id::Batch, Id::UInt16, collection(2, 2, {0, 1, 0}),
                      "InvalidLength", "declares 2 items of 2 bytes, but 3 bytes follow"},
        BadCollection{"TrailingBytes", Id::Batch, Id::UInt8, collection(1, 1, {7, 8}),
                      "InvalidLength", "declares 1 items of 1 bytes, but 2 bytes"},
        BadCollection{"HugeCount", Id::Array, Id::UInt16, collection(0xFFFFFFFF, 2, {0, 1}),
                      "InvalidLength", "4294967295 items of 2 bytes"},
        // 0x10000 * 0x10000 is 0 in 32 bits: the check must not wrap.
        BadCollection{"ProductWrapsIn32Bits", Id::Batch, Id::DataStream,
                      collection(0x10000, 0x10000, {}), "InvalidLength",
                      "65536 items of 65536 bytes, but 0 bytes"},
        BadCollection{"ZeroSizeItems", Id::Batch, Id::DataStream, collection(5, 0, {}),
                      "InvalidLength", "5 items of 0 bytes"},
        BadCollection{"SizeDisagreesWithType", Id::Array, Id::UInt16, collection(1, 3, {1, 2, 3}),
                      "InvalidLength", "UInt16 has items of 2 bytes, not 3"},
        BadCollection{"OddUTF16Items", Id::Array, Id::UTF16String, collection(1, 3, {0, 'a', 0}),
                      "InvalidLength", "item 0 at byte offset 8"},
        BadCollection{"NotAKind", Id::UInt16, Id::UInt16, Bytes(8), "InvalidFormat",
                      "not a collection kind"},
        BadCollection{"ItemTypeWithoutClass", Id::Batch, Id::Float, Bytes(8), "InvalidFormat",
                      "Float, which has no value class"},
        BadCollection{"NestedCollection", Id::Batch, Id::Array, Bytes(8), "InvalidFormat",
                      "Array, which has no value class"}),
    [](const auto& p) { return std::string(p.param.name); });

} // namespace
