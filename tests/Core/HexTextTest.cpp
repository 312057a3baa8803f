#include "Utils/HexText.h"

#include "Support/PrintCase.h"

#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

namespace {

using Vellum::WString;
namespace Utils = Vellum::Utils;

struct DigitCase {
    char16_t c;
    int value;
};
VELLUM_PRINT_CASE(DigitCase, "character " << static_cast<unsigned>(c.c))

class HexDigitValue : public ::testing::TestWithParam<DigitCase> {};

TEST_P(HexDigitValue, ReadsEitherCaseAndRejectsTheNeighbours) {
    EXPECT_EQ(Utils::hexDigitValue(GetParam().c), GetParam().value);
}

// The characters just outside each digit range, and look-alikes beyond ASCII.
INSTANTIATE_TEST_SUITE_P(
    Digits, HexDigitValue,
    ::testing::Values(DigitCase{u'0', 0}, DigitCase{u'9', 9}, DigitCase{u'A', 10},
                      DigitCase{u'F', 15}, DigitCase{u'a', 10}, DigitCase{u'f', 15},
                      DigitCase{u'/', -1}, DigitCase{u':', -1}, DigitCase{u'@', -1},
                      DigitCase{u'G', -1}, DigitCase{u'`', -1}, DigitCase{u'g', -1},
                      DigitCase{u'\0', -1}, DigitCase{u'\xFF10', -1}, DigitCase{u'\x0130', -1}));

TEST(HexText, WritesUpperCaseDigitPairs) {
    const std::uint8_t bytes[] = {0x0A, 0xFF, 0x00, 0x9B};
    EXPECT_EQ(Utils::hexText(bytes, 4), u"0AFF009B");
    EXPECT_EQ(Utils::hexText(bytes, 0), u"");
    std::string narrow;
    Utils::appendHexByte(narrow, 0xC3);
    EXPECT_EQ(narrow, "C3");
}

TEST(HexText, WritesDottedWithoutTrailingSeparator) {
    const std::uint8_t bytes[] = {0x06, 0x0E, 0x2B, 0xFA};
    std::array<char16_t, 12> buffer{};
    EXPECT_EQ(Utils::writeDottedHex(bytes, 4, buffer.data()), u"06.0E.2B.FA");
    EXPECT_EQ(Utils::writeDottedHex(bytes, 1, buffer.data()), u"06");
    EXPECT_EQ(Utils::writeDottedHex(bytes, 0, buffer.data()), u"");
}

struct DottedCase {
    const char16_t* text;
    std::size_t count;
    bool valid;
};
VELLUM_PRINT_CASE(DottedCase, Vellum::Utils::wstringToString(Vellum::WString(c.text))
                                  << " as " << c.count)

class ReadDottedHex : public ::testing::TestWithParam<DottedCase> {};

TEST_P(ReadDottedHex, AcceptsExactlyTheDottedForm) {
    const DottedCase& c = GetParam();
    std::array<std::uint8_t, 3> bytes{};
    ASSERT_EQ(Utils::readDottedHex(c.text, bytes.data(), c.count), c.valid);
    if (c.valid && c.count == 3) {
        EXPECT_EQ(bytes, (std::array<std::uint8_t, 3>{0x06, 0xAB, 0xF0}));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ReadDottedHex,
    ::testing::Values(DottedCase{u"06.AB.F0", 3, true}, DottedCase{u"06.ab.f0", 3, true},
                      DottedCase{u"", 0, true}, DottedCase{u"06", 1, true},
                      DottedCase{u"06.AB.F", 3, false}, DottedCase{u"06.AB.F0.", 3, false},
                      DottedCase{u"06-AB.F0", 3, false}, DottedCase{u"06.AG.F0", 3, false},
                      DottedCase{u"06.AB F0", 3, false}, DottedCase{u" 6.AB.F0", 3, false},
                      DottedCase{u".", 0, false}, DottedCase{u"06AB.F0", 3, false}));

} // namespace
