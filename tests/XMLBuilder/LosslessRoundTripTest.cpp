#include "Metadata/HeaderMetadataBytes.h"
#include "Support/PrintCase.h"
#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/HeaderMetadataComparison.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <gtest/gtest.h>

#include <string>

// Header metadata that real writers produce (or the fuzzer found) and that once changed on
// export -> import, each built byte by byte; every one must come back equal (same sets by
// identifier, same items by label with the same bytes, same dark metadata), in both layouts,
// and again through KLV.
namespace {

using namespace VellumTest;
using Vellum::Metadata::HeaderMetadataComparison;
using Vellum::Metadata::PartitionMetadata;

Bytes identifications(std::initializer_list<Bytes> ids) {
    return item(0x3B06, batchOf(ids, 16));
}

struct Case {
    const char* name;
    Bytes bytes;
};

VELLUM_PRINT_CASE_NAME(Case)

const Case cases[] = {
    {"ControlCharactersAndTerminatorInAString",
     header(identifications({uuid(0x22)}),
            identification(0x22, item(0x3C01, utf16(std::u16string(u"A\x01\x1F"
                                                                   u"B\uFFFE\0",
                                                                   6)))))},
    {"WhitespaceOnlyAndEmptyStrings",
     header(identifications({uuid(0x22)}),
            identification(0x22, concat({item(0x3C02, utf16(u"   ")), item(0x3C08, {})})))},
    {"OddBooleanAndPaddedString",
     header(concat({identifications({uuid(0x22)}), item(0x3B01, {0x4D, 0x4D})}),
            identification(0x22, item(0x3C04, utf16(std::u16string(u"1.0\0\0", 5)))))},
    {"UnknownSetsReferringToOneAnother",
     header(
         item(0x3B03, uuid(0x22)),
         concat(
             {klv(privateSetKey, concat({item(0x3C0A, uuid(0x22)), item(0x8001, uuid(0x33))})),
              klv(privateSetKey, concat({item(0x3C0A, uuid(0x33)), item(0x8001, uuid(0x22))}))}))},
    {"AllZeroAndDanglingReferences",
     header(concat({item(0x3B08, uuid(0x00)), identifications({uuid(0x00), uuid(0x99)})}), {})},
    {"DarkMetadataAndAnAUIDKey",
     header({}, concat({klv(Bytes(16, 0x80), {1, 2, 3}), klv(fillKey, Bytes(3, 0)),
                        klv(privateSetKey, {})}))},
    {"EmptyBatchesWithItemSizeZero",
     header(concat({item(0x3B0B, batchOf({}, 0)), item(0x3B06, batchOf({}, 0))}), {})},
    {"SetsSharingAnIdentifierAndFloatingSets",
     header(identifications({uuid(0x22)}),
            concat({identification(0x22, item(0x3C01, utf16(u"first"))),
                    identification(0x22, item(0x3C01, utf16(u"second"))),
                    identification(0x44, item(0x3C01, utf16(u"floating")))}))},
    {"ItemWithADynamicTagThePrimerLacks", header(item(0x8002, {1, 2, 3}), {})},
    {"SetStoredWithoutItsIdentifier",
     header(identifications({uuid(0x22)}), klv(identificationKey, item(0x3C01, utf16(u"x"))))},
};

std::unique_ptr<PartitionMetadata> partitionOf(const Bytes& bytes) {
    return PartitionMetadata::read({bytes.data(), bytes.size()}, 0,
                                   Vellum::MetaMetadata::Dictionary::builtIn());
}

std::unique_ptr<PartitionMetadata> imported(
    const std::string& xml,
    Vellum::XML2Partition::Identifiers identifiers = Vellum::XML2Partition::Identifiers::Keep) {
    auto partition = emptyPartition();
    Vellum::XML2Partition::getPartitionMetadataFromString(Vellum::Utils::stringToWstring(xml),
                                                          partition.get(), identifiers);
    return partition;
}

class LosslessRoundTrip : public ::testing::TestWithParam<std::tuple<Case, bool>> {};

TEST_P(LosslessRoundTrip, ExportImportGivesEqualHeaderMetadata) {
    const auto& [c, typed] = GetParam();
    const auto original = partitionOf(c.bytes);
    const std::string xml = exportText(*original, typed);
    ASSERT_FALSE(xml.empty());
    const auto again = imported(xml);
    EXPECT_EQ(differences(*original, *again), "") << xml;
    EXPECT_EQ(differences(*original, *serializedAndReadBack(*again)), "") << xml;
    EXPECT_EQ(exportText(*again, typed), xml) << "a second export is the first";
}

INSTANTIATE_TEST_SUITE_P(Cases, LosslessRoundTrip,
                         ::testing::Combine(::testing::ValuesIn(cases), ::testing::Bool()),
                         [](const auto& param) {
                             return std::string(std::get<0>(param.param).name) +
                                    (std::get<1>(param.param) ? "_typed" : "_flat");
                         });

TEST(LosslessRoundTrip, CharactersXMLCannotHoldBecomeReplacementCharacters) {
    const auto original = partitionOf(cases[0].bytes);
    const std::string xml = exportText(*original, false);
    EXPECT_NE(xml.find("A\xEF\xBF\xBD\xEF\xBF\xBD"
                       "B\xEF\xBF\xBD</s377m:CompanyName>"),
              std::string::npos)
        << xml;
    EXPECT_NE(xml.find("groups:StoredBytes=\"00410001001F0042FFFE0000\""), std::string::npos);
}

TEST(LosslessRoundTrip, AnEditedValueWinsOverItsStoredBytes) {
    const auto original = partitionOf(cases[2].bytes);
    std::string xml = exportText(*original, false);
    const std::string before = ">1.0</s377m:VersionString>";
    ASSERT_NE(xml.find(before), std::string::npos) << xml;
    xml.replace(xml.find(before), before.size(), ">2.0</s377m:VersionString>");
    EXPECT_EQ(differences(*original, *imported(xml)),
              "item changed Identification VersionString: \"1.0\" -> \"2.0\"\n");
}

TEST(LosslessRoundTrip, RenewedIdentifiersMakeNewSets) {
    const auto original = partitionOf(cases[0].bytes);
    const std::string xml = exportText(*original, true);
    const auto renewed = imported(xml, Vellum::XML2Partition::Identifiers::Renew);
    const auto found = HeaderMetadataComparison::compare(*original, *renewed);
    EXPECT_EQ(found.size(), 2 * original->sets().size()) << "every set removed and added";
    EXPECT_EQ(exportText(*renewed, true).size(), xml.size()) << "only identifiers differ";
}

} // namespace
