#include "Support/PrintCase.h"
#include "Support/Samples.h"
#include "XMLBuilder/ImportTestSupport.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <gtest/gtest.h>

namespace {

using namespace Vellum;

struct Mode {
    bool typed;
    const char* name;
};
VELLUM_PRINT_CASE_NAME(Mode)

class SampleImport : public ::testing::TestWithParam<std::tuple<std::string, Mode>> {};

TEST_P(SampleImport, ExportImportGivesTheSameDocumentSetsAndValues) {
    const auto& [sample, mode] = GetParam();
    const auto original = Metadata::PartitionMetadata::readFile(
        VellumTest::sampleDir() + "/" + sample, "header", MetaMetadata::Dictionary::builtIn());
    const std::string firstExport = VellumTest::exportText(*original, mode.typed);
    ASSERT_FALSE(firstExport.empty());
    auto imported = VellumTest::emptyPartition();
    const auto sets = XML2Partition::getPartitionMetadataFromString(
        Utils::stringToWstring(firstExport.c_str()), imported.get());
    // Identifiers are kept, so the second export is the first to the byte.
    EXPECT_EQ(VellumTest::exportText(*imported, mode.typed), firstExport);
    // The top-level sets in document order: the Preface first, and with typed references
    // every other set nested inside it.
    ASSERT_FALSE(sets.empty());
    EXPECT_EQ(sets.front(), imported->sets().front());
    EXPECT_EQ(sets.size(), mode.typed ? 1U : imported->sets().size());
    // Written as KLV, the sets hold the original items with the original bytes.
    EXPECT_EQ(VellumTest::differences(*original, *VellumTest::serializedAndReadBack(*imported)),
              "");
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
