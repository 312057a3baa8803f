#include "Vellum/Types/SimpleDataType.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "TypesTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Types/Boolean.h"
#include "Vellum/Types/DataStream.h"
#include "Vellum/Types/ISO7String.h"
#include "Vellum/Types/Int16.h"
#include "Vellum/Types/Int64.h"
#include "Vellum/Types/J2KCodingStyleDefault.h"
#include "Vellum/Types/J2KPictureComponent.h"
#include "Vellum/Types/J2KQuantisationDefault.h"
#include "Vellum/Types/Length.h"
#include "Vellum/Types/ProductVersion.h"
#include "Vellum/Types/Rational.h"
#include "Vellum/Types/UInt32.h"
#include "Vellum/Types/UInt64.h"
#include "Vellum/Types/UTF16.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/VersionType.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace {

using namespace VellumTypesTest;
namespace T = Vellum::Types;
using Make = std::function<std::unique_ptr<T::SimpleDataType>()>;

template <class Value, class... Args>
Make make(Args... args) {
    return [=] {
        return std::make_unique<Value>(args...);
    };
}

const std::uint8_t payload[] = {0xAA, 0xBB};

struct Constructed {
    const char* name;
    Make value;
    Bytes bytes;
};
VELLUM_PRINT_CASE_NAME(Constructed)

class ConstructedValues : public ::testing::TestWithParam<Constructed> {};

// Values built by a reader of text (not of bytes) serialise big-endian, field by field.
TEST_P(ConstructedValues, SerialiseAsStored) {
    const auto value = GetParam().value();
    EXPECT_EQ(serialized(*value), GetParam().bytes);
    EXPECT_EQ(value->serializedSize(), GetParam().bytes.size());
}

INSTANTIATE_TEST_SUITE_P(
    Types, ConstructedValues,
    ::testing::Values(
        Constructed{"True", make<T::Boolean>(true), {1}},
        Constructed{"Int16", make<T::Int16>(std::int16_t{-2}), {0xFF, 0xFE}},
        Constructed{"UInt32", make<T::UInt32>(0x01020304U), {1, 2, 3, 4}},
        Constructed{"Int64",
                    make<T::Int64>(std::int64_t{-1000}),
                    {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFC, 0x18}},
        Constructed{"UInt64", make<T::UInt64>(0x0102030405060708ULL), {1, 2, 3, 4, 5, 6, 7, 8}},
        Constructed{"Length", make<T::Length>(std::int64_t{256}), {0, 0, 0, 0, 0, 0, 1, 0}},
        Constructed{"UTF16", make<T::UTF16>(u'\u263A'), {0x26, 0x3A}},
        Constructed{"ISO7String", make<T::ISO7String>(std::string("ab")), {'a', 'b'}},
        Constructed{
            "UTF16String", make<T::UTF16String>(Vellum::WString(u"a\u263A")), {0, 'a', 0x26, 0x3A}},
        Constructed{"DataStream", make<T::DataStream>(payload, std::uint64_t{2}), {0xAA, 0xBB}},
        Constructed{
            "Rational", make<T::Rational>(30000, 1001), {0, 0, 0x75, 0x30, 0, 0, 0x03, 0xE9}},
        Constructed{"VersionType", make<T::VersionType>(std::uint8_t{1}, std::uint8_t{2}), {1, 2}},
        Constructed{"ProductVersion",
                    make<T::ProductVersion>(std::uint16_t{1}, std::uint16_t{2}, std::uint16_t{3},
                                            std::uint16_t{0x0104},
                                            T::ProductVersion::ReleaseVersion::Beta),
                    {0, 1, 0, 2, 0, 3, 1, 4, 0, 4}},
        Constructed{"J2KPictureComponent",
                    make<T::J2KPictureComponent>(std::uint8_t{7}, std::uint8_t{1}, std::uint8_t{2}),
                    {7, 1, 2}},
        Constructed{
            "J2KCodingStyleDefault",
            make<T::J2KCodingStyleDefault>(std::uint8_t{1}, 0x01020304U, payload, std::uint64_t{2}),
            {1, 1, 2, 3, 4, 0xAA, 0xBB}},
        Constructed{"J2KQuantisationDefault",
                    make<T::J2KQuantisationDefault>(std::uint8_t{9}, payload, std::uint64_t{2}),
                    {9, 0xAA, 0xBB}}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(SimpleDataType, StringsReadUpToTheFirstNulButKeepEveryUnit) {
    const T::UTF16String text(Vellum::WString(u"ab\0\0", 4));
    EXPECT_EQ(text.value(), u"ab");
    EXPECT_EQ(text.serializedSize(), 8U);
    EXPECT_EQ(T::ISO7String(std::string("x\0y", 3)).value(), "x");
}

TEST(SimpleDataType, NullBytesWithALengthThrow) {
    EXPECT_THROW_MSG_HAS(T::DataStream(nullptr, 3), InvalidFormat,
                         "no bytes given for a DataStream of 3 bytes");
    EXPECT_THROW_MSG_HAS(T::J2KQuantisationDefault(1, nullptr, 3), InvalidFormat, "no bytes given");
}

} // namespace
