#include "Vellum/Platform/StringConversion.h"

#include "Support/PrintCase.h"

#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Vellum::WString;
using Vellum::Utils::stringToWstring;
using Vellum::Utils::wstringToString;

struct ConversionCase {
    const char* name;
    std::string utf8;
    WString utf16;
    bool backAgain; // false: ill-formed UTF-8, read with replacement characters
};
VELLUM_PRINT_CASE_NAME(ConversionCase)

class Utf8ToUtf16 : public ::testing::TestWithParam<ConversionCase> {};

TEST_P(Utf8ToUtf16, ConvertsAndWhenWellFormedBackAgain) {
    const auto& c = GetParam();
    EXPECT_EQ(stringToWstring(std::string_view(c.utf8)), c.utf16);
    if (c.backAgain) {
        EXPECT_EQ(wstringToString(c.utf16), c.utf8);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Utf, Utf8ToUtf16,
    ::testing::Values(ConversionCase{"empty", "", u"", true},
                      ConversionCase{"ascii", "Preface", u"Preface", true},
                      ConversionCase{"twoByte", "caf\xC3\xA9", u"caf\u00E9", true},
                      ConversionCase{"threeByte", "\xE2\x82\xAC", u"\u20AC", true},
                      ConversionCase{"surrogatePair", "\xF0\x9F\x8E\xAC", u"\U0001F3AC", true},
                      ConversionCase{"embeddedNul", std::string("a\0b", 3), WString(u"a\0b", 3),
                                     true},
                      ConversionCase{"strayContinuation", "a\x80z", u"a\uFFFDz", false},
                      ConversionCase{"truncatedAtEnd", "a\xE2\x82", u"a\uFFFD", false},
                      ConversionCase{"overlong", "\xC0\xAF", u"\uFFFD", false},
                      ConversionCase{"encodedSurrogate", "\xED\xA0\x80", u"\uFFFD", false},
                      ConversionCase{"beyondUnicode", "\xF4\x90\x80\x80", u"\uFFFD", false},
                      ConversionCase{"invalidLead", "\xFF", u"\uFFFD", false}),
    [](const auto& p) { return p.param.name; });

TEST(StringConversion, LoneSurrogatesBecomeReplacementCharacters) {
    EXPECT_EQ(wstringToString(WString{u'a', char16_t(0xD800), u'b'}), "a\xEF\xBF\xBD"
                                                                      "b");
    EXPECT_EQ(wstringToString(WString{char16_t(0xDC00)}), "\xEF\xBF\xBD");
}

TEST(StringConversion, NullPointersGiveEmptyStrings) {
    EXPECT_EQ(stringToWstring(static_cast<const char*>(nullptr)), u"");
    EXPECT_EQ(Vellum::Platform::wstringToString(nullptr), "");
    EXPECT_EQ(Vellum::Platform::wstringToString(u"x\u00E9"), "x\xC3\xA9");
}

} // namespace
