#include "Vellum/Metadata/HeaderMetadataMerge.h"

#include "Support/Samples.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/DarkMetadataSet.h"
#include "Vellum/Metadata/HeaderMetadataComparison.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Types/UniversalLabel.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace Vellum;
using Metadata::HeaderMetadataComparison;
using Metadata::HeaderMetadataMerge;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using Bytes = std::vector<std::uint8_t>;

Types::UniversalLabel label(const char16_t* text) {
    return Types::UniversalLabel(text, Types::DottedHex);
}
KLV::Key key(const char16_t* text) {
    return KLV::Key(text, Types::DottedHex);
}

const auto companyName = label(u"06.0E.2B.34.01.01.01.02.05.20.07.01.02.01.00.00");
const auto platform = label(u"06.0E.2B.34.01.01.01.02.05.20.07.01.06.01.00.00");
const auto trackID = label(u"06.0E.2B.34.01.01.01.02.01.07.01.01.00.00.00.00");
const auto identificationKey = key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00");
const auto trackKey = key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.3B.00");

std::unique_ptr<PartitionMetadata> readSample(const std::string& name) {
    return PartitionMetadata::readFile(VellumTest::sampleDir() + "/" + name, "header",
                                       MetaMetadata::Dictionary::builtIn());
}

Bytes bytesOf(const MetadataSet& set) {
    DataIO::Memory::MemoryDataSink sink;
    set.serialize(sink);
    return sink.release();
}

void setValue(MetadataSet& set, const Types::UniversalLabel& ul, const Bytes& bytes) {
    set.findElement(ul)->readValue(DataIO::Slice(bytes.data(), bytes.size()));
}

// An edit of every kind: a string and a number changed, an item added and one removed, a set
// added and one removed, a dark metadata set added.
void edit(PartitionMetadata& doc) {
    MetadataSet& identification = *doc.find(identificationKey).front();
    setValue(identification, companyName, {0, 'V', 0, 'e', 0, 'l'});
    if (identification.findElement(platform)->isEmpty()) {
        setValue(identification, platform, {0, 'X'});
    } else {
        identification.removeElement(*identification.findElement(platform));
    }
    setValue(*doc.find(trackKey).front(), trackID, {0, 0, 0, 99});
    MetadataSet* added = doc.createMetadataSet(identificationKey);
    setValue(*added, companyName, {0, 'N'});
    doc.removeSet(*doc.find(trackKey).back());
    doc.addDarkMetadataSet(std::make_unique<Metadata::DarkMetadataSet>(
        KLV::Key(Bytes(16, 0x80).data(), 16), 4, KLV::Value(Bytes{1, 2}.data(), 2)));
}

class MergeOnSample : public ::testing::TestWithParam<std::string> {};

TEST_P(MergeOnSample, MakesExactlyTheEditAndKeepsEverythingElseAsStored) {
    const auto original = readSample(GetParam());
    auto doc = readSample(GetParam());
    edit(*doc);
    auto file = readSample(GetParam());
    const std::size_t changes = HeaderMetadataMerge::apply(*file, *original, *doc);
    EXPECT_EQ(changes, 6U);
    EXPECT_TRUE(HeaderMetadataComparison::compare(*doc, *file).empty());
    const auto expected = HeaderMetadataComparison::compare(*original, *doc);
    const auto made = HeaderMetadataComparison::compare(*original, *file);
    ASSERT_EQ(made.size(), expected.size());
    std::set<WString> touched;
    for (const auto& difference : made) {
        touched.insert(difference.setIdentifier);
    }
    for (const MetadataSet* set : file->sets()) {
        const WString id = set->instanceUID()->toString(Types::DottedHex);
        if (touched.count(id) == 0) {
            const auto& same = original->findByInstanceUID(*set->instanceUID());
            ASSERT_EQ(same.size(), 1U);
            EXPECT_EQ(bytesOf(*set), bytesOf(*same.front())) << "untouched sets keep their bytes";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, MergeOnSample, ::testing::ValuesIn(VellumTest::sampleNames()),
                         VellumTest::sampleTestName);

TEST(HeaderMetadataMerge, AppliesOnlyTheEditToAnotherVersionOfTheMetadata) {
    const std::string sample = VellumTest::sampleNames().front();
    const auto base = readSample(sample);
    auto doc = readSample(sample);
    setValue(*doc->find(identificationKey).front(), companyName, {0, 'V'});
    // The footer's own version differs from the header's elsewhere; that difference stays.
    auto footer = readSample(sample);
    setValue(*footer->find(trackKey).front(), trackID, {0, 0, 0, 7});
    EXPECT_EQ(HeaderMetadataMerge::apply(*footer, *base, *doc), 1U);
    const auto left = HeaderMetadataComparison::compare(*doc, *footer);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left.front().newValue, u"7");
    EXPECT_EQ(HeaderMetadataMerge::apply(*footer, *base, *doc), 0U)
        << "applying twice changes nothing";
}

} // namespace
