#include "Vellum/Platform/StringConversion.h"

#include "Support/PrintCase.h"

#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Vellum::WString;
using Vellum::Utils::stringToWstring;
using Vellum::Utils::wstringToString;

struct RoundTripCase {
    const char* name;
    std::string utf8;
    WString utf16;
};
VELLUM_PRINT_CASE_NAME(RoundTripCase)

class StringRoundTrip : public ::testing::TestWithParam<RoundTripCase> {};

TEST_P(StringRoundTrip, ConvertsBothWays) {
    const auto& c = GetParam();
    EXPECT_EQ(stringToWstring(std::string_view(c.utf8)), c.utf16);
    EXPECT_EQ(wstringToString(c.utf16), c.utf8);
}

INSTANTIATE_TEST_SUITE_P(
    Utf, StringRoundTrip,
    ::testing::Values(RoundTripCase{"empty", "", u""},
                      RoundTripCase{"ascii", "Preface", u"Preface"},
                      RoundTripCase{"twoByte", "caf\xC3\xA9", u"caf\u00E9"},
                      RoundTripCase{"threeByte", "\xE2\x82\xAC", u"\u20AC"},
                      RoundTripCase{"surrogatePair", "\xF0\x9F\x8E\xAC", u"\U0001F3AC"},
                      RoundTripCase{"embeddedNul", std::string("a\0b", 3), WString(u"a\0b", 3)}),
    [](const auto& p) { return p.param.name; });

struct IllFormedCase {
    const char* name;
    std::string utf8;
    WString expected;
};
VELLUM_PRINT_CASE_NAME(IllFormedCase)

class IllFormedUtf8 : public ::testing::TestWithParam<IllFormedCase> {};

TEST_P(IllFormedUtf8, BecomesReplacementCharacters) {
    EXPECT_EQ(stringToWstring(std::string_view(GetParam().utf8)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Utf, IllFormedUtf8,
    ::testing::Values(IllFormedCase{"strayContinuation", "a\x80z", u"a\uFFFDz"},
                      IllFormedCase{"truncatedAtEnd", "a\xE2\x82", u"a\uFFFD"},
                      IllFormedCase{"overlong", "\xC0\xAF", u"\uFFFD"},
                      IllFormedCase{"encodedSurrogate", "\xED\xA0\x80", u"\uFFFD"},
                      IllFormedCase{"beyondUnicode", "\xF4\x90\x80\x80", u"\uFFFD"},
                      IllFormedCase{"invalidLead", "\xFF", u"\uFFFD"}),
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
