#include "Support/PrintCase.h"
#include "Support/Samples.h"
#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using namespace Vellum;

struct Mode {
    bool typed;
    const char* name;
};
VELLUM_PRINT_CASE_NAME(Mode)

class SampleImport : public ::testing::TestWithParam<std::tuple<std::string, Mode>> {
protected:
    void SetUp() override {
        const auto& [sample, mode] = GetParam();
        original = Metadata::PartitionMetadata::readFile(
            VellumTest::sampleDir() + "/" + sample, "header", MetaMetadata::Dictionary::builtIn());
        firstExport = VellumTest::exportText(*original, mode.typed);
        imported = VellumTest::emptyPartition();
        sets = XML2Partition::getPartitionMetadataFromString(
            Utils::stringToWstring(firstExport.c_str()), imported.get());
        secondExport = VellumTest::exportText(*imported, mode.typed);
    }

    std::unique_ptr<Metadata::PartitionMetadata> original;
    std::unique_ptr<Metadata::PartitionMetadata> imported;
    Templates::list<Metadata::MetadataSet*> sets;
    std::string firstExport;
    std::string secondExport;
};

TEST_P(SampleImport, ExportImportExportGivesTheSameDocument) {
    ASSERT_FALSE(firstExport.empty());
    EXPECT_EQ(imported->sets().size(), original->sets().size());
    // Identifiers are kept, so the second export is the first to the byte.
    EXPECT_EQ(secondExport, firstExport);
}

TEST_P(SampleImport, ListsTheTopLevelSetsInDocumentOrder) {
    const auto& [sample, mode] = GetParam();
    ASSERT_FALSE(sets.empty());
    EXPECT_EQ(sets.front(), imported->sets().front()) << "the Preface comes first";
    if (mode.typed) {
        EXPECT_EQ(sets.size(), 1U) << "every other set is nested inside the Preface";
    } else {
        EXPECT_EQ(sets.size(), imported->sets().size()) << "a flat document lists every set";
    }
}

TEST_P(SampleImport, WrittenAsKLVHoldsTheOriginalSetsAndValues) {
    const auto readBack = VellumTest::serializedAndReadBack(*imported);
    const auto originalIds = VellumTest::identifierOrder(firstExport);
    const auto importedIds = VellumTest::identifierOrder(secondExport);
    ASSERT_EQ(originalIds.inOrder.size(), importedIds.inOrder.size());
    const auto expected = VellumTest::canonicalSets(*original, originalIds);
    const auto actual = VellumTest::canonicalSets(*readBack, importedIds);
    ASSERT_EQ(actual.size(), expected.size());
    for (const auto& [identifier, text] : expected) {
        const auto found = actual.find(identifier);
        ASSERT_NE(found, actual.end()) << "set " << identifier;
        EXPECT_EQ(found->second, text) << "set " << identifier;
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleImport,
                         ::testing::Combine(::testing::ValuesIn(VellumTest::sampleNames()),
                                            ::testing::Values(Mode{false, "flat"},
                                                              Mode{true, "typed"})),
                         [](const auto& p) {
                             return VellumTest::testName(std::get<0>(p.param)) + "_" +
                                    std::get<1>(p.param).name;
                         });

} // namespace
