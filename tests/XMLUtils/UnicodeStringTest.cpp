#include "Vellum/XMLUtils/UnicodeString.h"

#include "Support/PrintCase.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace {

using Vellum::WString;
using Vellum::XMLUtils::UnicodeString;

struct TextCase {
    const char* name;
    std::string utf8;
    WString utf16;
    std::wstring wide;
};

VELLUM_PRINT_CASE_NAME(TextCase)

class UnicodeStringRoundTrip : public ::testing::TestWithParam<TextCase> {};

TEST_P(UnicodeStringRoundTrip, AllViewsAgree) {
    const TextCase& c = GetParam();
    const UnicodeString fromUtf8(c.utf8.c_str());
    EXPECT_EQ(fromUtf8.wstring(), c.utf16);
    EXPECT_EQ(fromUtf8.utf16Size(), c.utf16.size());
    EXPECT_EQ(WString(fromUtf8.utf16()), c.utf16);
    EXPECT_EQ(std::wstring(fromUtf8.wchar()), c.wide);
    EXPECT_EQ(fromUtf8.utf8(), c.utf8);

    const UnicodeString fromUtf16(c.utf16.c_str());
    EXPECT_EQ(fromUtf16, fromUtf8);
    EXPECT_EQ(UnicodeString(c.utf16), fromUtf8);
    EXPECT_EQ(std::wstring(UnicodeString(fromUtf16).wchar()), c.wide);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, UnicodeStringRoundTrip,
    ::testing::Values(TextCase{"Empty", "", u"", L""},
                      TextCase{"Ascii", "Preface", u"Preface", L"Preface"},
                      TextCase{"Latin",
                               "Pr\xC3\xA9"
                               "face",
                               u"Pr\u00E9face", L"Pr\u00E9face"},
                      // U+1F3AC (clapper board) needs a surrogate pair in UTF-16.
                      TextCase{"NonBmp",
                               "a\xF0\x9F\x8E\xAC"
                               "b",
                               u"a\U0001F3ACb", L"a\U0001F3ACb"}),
    [](const auto& p) { return p.param.name; });

TEST(UnicodeString, NullPointersGiveEmptyText) {
    EXPECT_TRUE(UnicodeString(static_cast<const char*>(nullptr)).wstring().empty());
    EXPECT_TRUE(UnicodeString(static_cast<const XMLCh*>(nullptr)).wstring().empty());
    EXPECT_EQ(UnicodeString().utf16()[0], u'\0');
    EXPECT_EQ(UnicodeString().wchar()[0], L'\0');
}

TEST(UnicodeString, LoneSurrogatesBecomeReplacementCharacters) {
    const WString units = {u'x', static_cast<char16_t>(0xD800), u'y',
                           static_cast<char16_t>(0xDC00)};
    const UnicodeString text(units);
    EXPECT_EQ(text.wstring(), units);
    EXPECT_EQ(std::wstring(text.wchar()), L"x\uFFFDy\uFFFD");
}

TEST(UnicodeString, OrdersByCodeUnits) {
    EXPECT_LT(UnicodeString("Alpha"), UnicodeString("Beta"));
    EXPECT_FALSE(UnicodeString("Beta") < UnicodeString("Alpha"));
    EXPECT_NE(UnicodeString("a"), UnicodeString("A"));
}

} // namespace
