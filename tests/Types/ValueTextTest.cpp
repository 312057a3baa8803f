#include "Vellum/Types/ValueText.h"

#include "Types/TypesTestSupport.h"

#include "Vellum/Types/Collection.h"
#include "Vellum/Types/Factories/ValueFactory.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

using namespace VellumTypesTest;
using Vellum::WString;
using Vellum::Types::ValueText;
using Vellum::Types::Factories::ValueFactory;

// The text of every sample of TypesTestSupport.h, by sample name.
const std::map<std::string, WString>& expectedTexts() {
    static const std::map<std::string, WString> texts = {
        {"Boolean", u"1"},
        {"DataStream", u"00ABFF"},
        {"DataStreamEmpty", u""},
        {"Int16", u"-32767"},
        {"Int32", u"-2"},
        {"Int64", u"-9223372036854775807"},
        {"Int8", u"-128"},
        {"ISO7String", u"\"ab\""},
        {"ISO7StringEmpty", u"\"\""},
        {"Length", u"18446744073709551615"},
        {"Position", u"305419896"},
        {"ProductVersion", u"1.2.3.260.65535"},
        {"Rational", u"-1/1001"},
        {"Timestamp", u"2024-02-29 23:59:59.1020"},
        {"UInt16", u"48879"},
        {"UInt32", u"3735928559"},
        {"UInt64", u"18374686479671623681"},
        {"UInt8", u"254"},
        {"UMID32", u"10.11.12.13.14.15.16.17.18.19.1A.1B.1C.1D.1E.1F."
                   u"20.21.22.23.24.25.26.27.28.29.2A.2B.2C.2D.2E.2F"},
        {"UMID64", u"40.41.42.43.44.45.46.47.48.49.4A.4B.4C.4D.4E.4F."
                   u"50.51.52.53.54.55.56.57.58.59.5A.5B.5C.5D.5E.5F."
                   u"60.61.62.63.64.65.66.67.68.69.6A.6B.6C.6D.6E.6F."
                   u"70.71.72.73.74.75.76.77.78.79.7A.7B.7C.7D.7E.7F"},
        {"UniversalLabel", u"06.07.08.09.0A.0B.0C.0D.0E.0F.10.11.12.13.14.15"},
        {"Unknown", u"010002"},
        {"UTF16", u"\"\\uD800\""},
        {"UTF16String", u"\"A\U0001F600\""},
        {"UTF16StringEmpty", u"\"\""},
        {"UUID", u"F0.F1.F2.F3.F4.F5.F6.F7.F8.F9.FA.FB.FC.FD.FE.FF"},
        {"VersionType", u"258"},
        {"StrongReference", u"30.31.32.33.34.35.36.37.38.39.3A.3B.3C.3D.3E.3F"},
        {"WeakReference", u"50.51.52.53.54.55.56.57.58.59.5A.5B.5C.5D.5E.5F"},
        {"Orientation", u"3"},
        {"RGBALayout", u"R8 G8 B8 A8"},
        {"SignalStandard", u"4"},
        {"J2KPictureComponent", u"Ssiz=135 XRsiz=1 YRsiz=2"},
        {"J2KCodingStyleDefault", u"Scod=1 SGcod=2147483653 SPcod=AABB"},
        {"J2KCodingStyleDefaultBare", u"Scod=1 SGcod=0 SPcod="},
        {"J2KQuantisationDefault", u"Sqcd=34 SPgcd=010203"},
        {"J2KQuantisationDefaultBare", u"Sqcd=34 SPgcd="},
    };
    return texts;
}

TEST(ValueText, EveryValueTypeHasItsTextForm) {
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        const auto expected = expectedTexts().find(sample.name);
        ASSERT_NE(expected, expectedTexts().end()) << "no expected text for this sample";
        const auto value =
            ValueFactory::create(sample.type, {sample.bytes.data(), sample.bytes.size()});
        EXPECT_EQ(ValueText::format(*value), expected->second);
    }
}

struct TextCase {
    const char* name;
    Id::Identifier type;
    Bytes bytes;
    WString text;
};

TEST(ValueText, EscapesAndCompoundValues) {
    const TextCase cases[] = {
        {"quote, backslash and controls",
         Id::UTF16String,
         {0, '"', 0, '\\', 0, '\n', 0, 0x7F, 0xDC, 0x00, 0xD8, 0x00},
         u"\"\\\"\\\\\\x0A\\x7F\\uDC00\\uD800\""},
        {"ISO 7 text that is not UTF-8", Id::ISO7String, {'a', 0xFF}, u"\"a\uFFFD\""},
        {"milliseconds in 4 ms steps",
         Id::Timestamp,
         {0, 0, 1, 2, 3, 4, 5, 1},
         u"0000-01-02 03:04:05.004"},
        {"RGBA slot without a printable code",
         Id::RGBALayout,
         {'R', 5, 0, 0, 0x01, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         u"R5 (0)0 (1)10"},
        {"empty RGBA layout", Id::RGBALayout, Bytes(16, 0), u""},
        {"false", Id::Boolean, {0}, u"0"},
    };
    for (const TextCase& c : cases) {
        SCOPED_TRACE(c.name);
        const auto value = ValueFactory::create(c.type, {c.bytes.data(), c.bytes.size()});
        EXPECT_EQ(ValueText::format(*value), c.text);
    }
}

TEST(ValueText, CollectionsListTheirItems) {
    const Bytes twoItems = {0, 0, 0, 2, 0, 0, 0, 2, 0x00, 0x01, 0xFF, 0xFF};
    const Bytes none = {0, 0, 0, 0, 0, 0, 0, 0};
    const auto array =
        ValueFactory::createCollection(Id::Array, Id::UInt16, {twoItems.data(), twoItems.size()});
    const auto batch =
        ValueFactory::createCollection(Id::Batch, Id::UUID, {none.data(), none.size()});
    EXPECT_EQ(ValueText::format(*array), u"[1, 65535]");
    EXPECT_EQ(ValueText::format(*batch), u"[]");
    EXPECT_EQ(ValueText::hex(twoItems.data(), 4), u"00000002");
}

} // namespace
