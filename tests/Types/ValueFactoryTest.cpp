#include "Vellum/Types/Factories/ValueFactory.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "TypesTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Types/Boolean.h"
#include "Vellum/Types/ISO7String.h"
#include "Vellum/Types/Int8.h"
#include "Vellum/Types/J2KCodingStyleDefault.h"
#include "Vellum/Types/ProductVersion.h"
#include "Vellum/Types/Rational.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/Unknown.h"

#include <gtest/gtest.h>

#include <memory>
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

// The value of `type` read from `bytes`, as its concrete class; the caller keeps `holder`.
template <class Value>
const Value& read(Id::Identifier type, const Bytes& bytes,
                  std::unique_ptr<Vellum::Types::SimpleDataType>& holder) {
    holder = ValueFactory::create(type, slice(bytes));
    return dynamic_cast<const Value&>(*holder);
}

TEST(ValueFactory, AccessorsReadTheStoredForm) {
    namespace T = Vellum::Types;
    std::unique_ptr<T::SimpleDataType> h;
    EXPECT_TRUE(read<T::Boolean>(Id::Boolean, {0x02}, h).value());
    EXPECT_EQ(read<T::Boolean>(Id::Boolean, {0x02}, h).storedByte(), 0x02);
    EXPECT_FALSE(read<T::Boolean>(Id::Boolean, {0x00}, h).value());
    EXPECT_EQ(read<T::Int8>(Id::Int8, {0x80}, h).value(), -128);

    const auto& iso = read<T::ISO7String>(Id::ISO7String, {'a', 'b', 0, 'c'}, h);
    EXPECT_EQ(iso.value(), "ab");
    EXPECT_EQ(iso.storedBytes(), std::string("ab\0c", 4));
    EXPECT_EQ(read<T::UTF16String>(Id::UTF16String, {0, 'h', 0x26, 0x3A, 0, 0, 0, 'x'}, h).value(),
              u"h\u263A");

    const auto& pv =
        read<T::ProductVersion>(Id::ProductVersion, {0, 1, 0, 2, 0, 3, 0, 4, 0xFF, 0xFE}, h);
    EXPECT_EQ(pv.major(), 1);
    EXPECT_EQ(pv.minor(), 2);
    EXPECT_EQ(pv.patch(), 3);
    EXPECT_EQ(pv.build(), 4);
    EXPECT_EQ(static_cast<unsigned>(pv.releaseVersion()), 0xFFFEU);

    const auto& r = read<T::Rational>(Id::Rational, {0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0x03, 0xE9}, h);
    EXPECT_EQ(r.numerator(), -1);
    EXPECT_EQ(r.denominator(), 1001);

    const auto& csd =
        read<T::J2KCodingStyleDefault>(Id::J2KCodingStyleDefault, {1, 0x80, 0, 0, 5, 0xAA}, h);
    EXPECT_EQ(csd.scod(), 1);
    EXPECT_EQ(csd.sGcod(), 0x80000005U);
    EXPECT_EQ(csd.spcod().bytes(), Bytes{0xAA});
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
        CollectionBytes{
            "BatchOfUInt16", Id::Batch, Id::UInt16, {0, 0, 0, 2, 0, 0, 0, 2, 0, 1, 0, 23}, 2},
        CollectionBytes{"EmptyArrayOfUUID", Id::Array, Id::UUID, {0, 0, 0, 0, 0, 0, 0, 16}, 0},
        CollectionBytes{"EmptyWithZeroSize", Id::Batch, Id::DataStream, Bytes(8), 0},
        CollectionBytes{"ArrayOfUTF16Strings",
                        Id::Array,
                        Id::UTF16String,
                        {0, 0, 0, 2, 0, 0, 0, 4, 0, 'a', 0, 0, 0, 'b', 0, 'c'},
                        2},
        CollectionBytes{"BatchOfWeakReferences", Id::Batch, Id::WeakReference,
                        [] {
                            Bytes b{0, 0, 0, 1, 0, 0, 0, 16};
                            const Bytes uuid = counting(16, 1);
                            b.insert(b.end(), uuid.begin(), uuid.end());
                            return b;
                        }(),
                        1}),
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
    ::testing::Values(BadCollection{"ShortHeader",
                                    Id::Batch,
                                    Id::UInt8,
                                    {0, 0, 0, 0, 0, 0, 1},
                                    "InvalidLength",
                                    "8-byte header (item count, item size), got 7 bytes"},
                      BadCollection{
                          "EmptyBuffer", Id::Array, Id::UInt8, {}, "InvalidLength", "got 0 bytes"},
                      BadCollection{"ItemsOverrunBuffer",
                                    Id::Batch,
                                    Id::UInt16,
                                    {0, 0, 0, 2, 0, 0, 0, 2, 0, 1, 0},
                                    "InvalidLength",
                                    "declares 2 items of 2 bytes, but 3 bytes follow"},
                      BadCollection{"TrailingBytes",
                                    Id::Batch,
                                    Id::UInt8,
                                    {0, 0, 0, 1, 0, 0, 0, 1, 7, 8},
                                    "InvalidLength",
                                    "declares 1 items of 1 bytes, but 2 bytes"},
                      BadCollection{"HugeCount",
                                    Id::Array,
                                    Id::UInt16,
                                    {0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 2, 0, 1},
                                    "InvalidLength",
                                    "4294967295 items of 2 bytes"},
                      // 0x10000 * 0x10000 is 0 in 32 bits: the check must not wrap.
                      BadCollection{"ProductWrapsIn32Bits",
                                    Id::Batch,
                                    Id::DataStream,
                                    {0, 1, 0, 0, 0, 1, 0, 0},
                                    "InvalidLength",
                                    "65536 items of 65536 bytes, but 0 bytes"},
                      BadCollection{"ZeroSizeItems",
                                    Id::Batch,
                                    Id::DataStream,
                                    {0, 0, 0, 5, 0, 0, 0, 0},
                                    "InvalidLength",
                                    "5 items of 0 bytes"},
                      BadCollection{"SizeDisagreesWithType",
                                    Id::Array,
                                    Id::UInt16,
                                    {0, 0, 0, 1, 0, 0, 0, 3, 1, 2, 3},
                                    "InvalidLength",
                                    "UInt16 has items of 2 bytes, not 3"},
                      BadCollection{"OddUTF16Items",
                                    Id::Array,
                                    Id::UTF16String,
                                    {0, 0, 0, 1, 0, 0, 0, 3, 0, 'a', 0},
                                    "InvalidLength",
                                    "item 0 at byte offset 8"},
                      BadCollection{"NotAKind", Id::UInt16, Id::UInt16, Bytes(8), "InvalidFormat",
                                    "not a collection kind"},
                      BadCollection{"ItemTypeWithoutClass", Id::Batch, Id::Float, Bytes(8),
                                    "InvalidFormat", "Float, which has no value class"},
                      BadCollection{"NestedCollection", Id::Batch, Id::Array, Bytes(8),
                                    "InvalidFormat", "Array, which has no value class"}),
    [](const auto& p) { return std::string(p.param.name); });

} // namespace
