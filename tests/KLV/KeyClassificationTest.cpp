#include "Vellum/KLV/KeyClassification.h"

#include "Support/PrintCase.h"

#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

namespace {

using Vellum::KLV::Key;

Key key(const char16_t* text) {
    return Key(text, Vellum::Types::DottedHex);
}

struct KeyCase {
    const char* name;
    const char16_t* text;
    bool structural, localSet, fill, partition, primer, rip;
};
VELLUM_PRINT_CASE_NAME(KeyCase)

class Classification : public ::testing::TestWithParam<KeyCase> {};

TEST_P(Classification, SaysWhatAKeyIntroduces) {
    const auto& c = GetParam();
    const Key k = key(c.text);
    EXPECT_EQ(Vellum::KLV::isStructuralMetadataSet(k), c.structural);
    EXPECT_EQ(Vellum::KLV::isLocalSet(k), c.localSet);
    EXPECT_EQ(Vellum::KLV::isFill(k), c.fill);
    EXPECT_EQ(Vellum::KLV::isPartitionPack(k), c.partition);
    EXPECT_EQ(Vellum::KLV::isPrimerPack(k), c.primer);
    EXPECT_EQ(Vellum::KLV::isRandomIndexPack(k), c.rip);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Keys, Classification, ::testing::Values(
    KeyCase{"preface", u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00", true, true, false, false, false, false},
    KeyCase{"cdciBerLengths", u"06.0E.2B.34.02.13.01.01.0D.01.01.01.01.01.28.00", true, true, false, false, false, false},
    KeyCase{"dms1Framework", u"06.0E.2B.34.02.53.01.01.0D.01.04.01.01.01.01.00", false, true, false, false, false, false},
    KeyCase{"fillLegacy", u"06.0E.2B.34.01.01.01.01.03.01.02.10.01.00.00.00", false, false, true, false, false, false},
    KeyCase{"fillCompliant", u"06.0E.2B.34.01.01.01.02.03.01.02.10.01.00.00.00", false, false, true, false, false, false},
    KeyCase{"headerClosedComplete", u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.02.04.00", false, false, false, true, false, false},
    KeyCase{"bodyOpen", u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.03.01.00", false, false, false, true, false, false},
    KeyCase{"footer", u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.04.02.00", false, false, false, true, false, false},
    KeyCase{"primer", u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.05.01.00", false, false, false, false, true, false},
    KeyCase{"rip", u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.11.01.00", false, false, false, false, false, true},
    KeyCase{"indexSegment", u"06.0E.2B.34.02.53.01.01.0D.01.02.01.01.10.01.00", false, true, false, false, false, false},
    KeyCase{"essenceElement", u"06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.01", false, false, false, false, false, false},
    KeyCase{"notSMPTE", u"00.00.00.00.02.53.01.01.0D.01.01.01.01.01.2F.00", false, false, false, false, false, false}),
    [](const auto& p) { return p.param.name; });

struct SetKeyCase {
    const char16_t* text;
    const char16_t* withTwoByteItemLengths;
    const char16_t* setIdentity;
    bool berItemLengths;
};
VELLUM_PRINT_CASE(SetKeyCase, Vellum::Utils::wstringToString(Vellum::WString(c.text)))

class SetKey : public ::testing::TestWithParam<SetKeyCase> {};

// Only byte 6 0x13 is rewritten (to 0x53); the identity also clears byte 8, the version.
TEST_P(SetKey, NamesTheSameSetInEitherCodingAndVersion) {
    const auto& c = GetParam();
    const Key k = key(c.text);
    EXPECT_EQ(Vellum::KLV::hasBERItemLengths(k), c.berItemLengths);
    EXPECT_EQ(Vellum::KLV::withTwoByteItemLengths(k), key(c.withTwoByteItemLengths));
    EXPECT_EQ(Vellum::KLV::setIdentityKey(k), key(c.setIdentity));
}

INSTANTIATE_TEST_SUITE_P(Keys, SetKey, ::testing::Values(
    SetKeyCase{u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00", u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00", u"06.0E.2B.34.02.53.01.00.0D.01.01.01.01.01.2F.00", false},
    SetKeyCase{u"06.0E.2B.34.02.13.01.05.0D.01.01.01.01.01.28.00", u"06.0E.2B.34.02.53.01.05.0D.01.01.01.01.01.28.00", u"06.0E.2B.34.02.53.01.00.0D.01.01.01.01.01.28.00", true},
    SetKeyCase{u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.05.01.00", u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.05.01.00", u"06.0E.2B.34.02.05.01.00.0D.01.02.01.01.05.01.00", false},
    SetKeyCase{u"00.00.00.00.00.13.00.7F.00.00.00.00.00.00.00.00", u"00.00.00.00.00.53.00.7F.00.00.00.00.00.00.00.00", u"00.00.00.00.00.53.00.00.00.00.00.00.00.00.00.00", true}));
// clang-format on

} // namespace
