#include "Vellum/MXF/MXFFile.h"

#include "MXF/SyntheticMXF.h"
#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "Support/Samples.h"

#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/KLV/KeyClassification.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

namespace {

using Vellum::DataIO::Memory::MemoryDataSource;
using Vellum::MXF::MXFFile;
using namespace VellumTest;

// The "- partitions: ..." line of each file in the samples' manifest, written by the tool that
// made the samples: "header/closed-complete(hbc=5632,ibc=512) footer/closed-complete(...)".
std::map<std::string, std::string> manifestPartitions() {
    std::ifstream in(sampleDir() + "/MANIFEST.md");
    std::map<std::string, std::string> result;
    std::string line;
    std::string current;
    while (std::getline(in, line)) {
        if (line.rfind("### ", 0) == 0) {
            current = line.substr(4);
        } else if (line.rfind("- partitions: ", 0) == 0 && !current.empty()) {
            result[current] = line.substr(14);
        }
    }
    return result;
}

std::string describe(const MXFFile& file) {
    std::ostringstream out;
    for (const auto& p : file.partitions()) {
        std::string status = p.statusName();
        std::replace(status.begin(), status.end(), ' ', '-');
        out << (out.tellp() > 0 ? ", " : "") << p.kindName() << '/' << status
            << "(hbc=" << p.headerByteCount() << ",ibc=" << p.indexByteCount() << ')';
    }
    return out.str();
}

class SampleStructure : public ::testing::TestWithParam<std::string> {};

TEST_P(SampleStructure, PartitionsAndHeaderMetadataAgreeWithTheManifest) {
    const auto expected = manifestPartitions();
    ASSERT_TRUE(expected.count(GetParam())) << "no manifest entry";
    Vellum::DataIO::File::FileDataSource source(sampleDir() + "/" + GetParam());
    const MXFFile file(source);
    EXPECT_EQ(describe(file), expected.at(GetParam()));
    EXPECT_EQ(file.runInLength(), 0U);
    EXPECT_TRUE(file.problems().empty());
    for (const auto& p : file.partitions()) {
        EXPECT_EQ(p.thisPartition(), p.offset()) << "partition at " << p.offset();
    }
    // The header metadata starts with the primer and fills its byte count.
    const auto& header = file.choosePartition("header");
    const auto metadata = file.readHeaderMetadata(header);
    ASSERT_EQ(metadata.bytes.size(), header.headerByteCount());
    EXPECT_TRUE(Vellum::KLV::isPrimerPack(Vellum::KLV::Key(metadata.bytes.data(), 16)));
    EXPECT_GE(metadata.offset, header.endOffset());
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleStructure, ::testing::ValuesIn(sampleNames()),
                         VellumTest::sampleTestName);

TEST(MXFFile, FindsPartitionsThroughEachRoute) {
    for (const bool withRip : {true, false}) {
        FileShape s;
        s.withRip = withRip;
        const Bytes bytes = syntheticFile(s);
        MemoryDataSource source(bytes.data(), bytes.size());
        const MXFFile file(source);
        EXPECT_EQ(file.discovery(), withRip ? "random index pack" : "footer chain");
        ASSERT_EQ(file.partitions().size(), 3U);
        EXPECT_EQ(file.partitions()[2].kindName(), std::string("footer"));
        EXPECT_EQ(file.randomIndexPack().has_value(), withRip);
    }
}

TEST(MXFFile, WalksWhenNeitherIndexNorFooterIsKnown) {
    Bytes bytes = klv(partitionKey(2, 1), partitionValue(0, 0, 0, emptyPrimer().size()));
    append(bytes, emptyPrimer());
    append(bytes, klv(fillKey, Bytes(3000, 0)));
    append(bytes, klv(partitionKey(3, 1), partitionValue(bytes.size(), 0, 0, 0)));
    MemoryDataSource source(bytes.data(), bytes.size());
    const MXFFile file(source);
    EXPECT_EQ(file.discovery(), "KLV walk");
    EXPECT_EQ(file.partitions().size(), 2U);
    EXPECT_EQ(file.partitions()[1].statusName(), "open incomplete");
}

TEST(MXFFile, SkipsARunIn) {
    FileShape s;
    s.runIn = 100;
    const Bytes bytes = syntheticFile(s);
    MemoryDataSource source(bytes.data(), bytes.size());
    const MXFFile file(source);
    EXPECT_EQ(file.runInLength(), 100U);
    EXPECT_EQ(file.discovery(), "random index pack");
    EXPECT_EQ(file.partitions()[1].offset(), file.partitions()[1].thisPartition() + 100);
    const auto metadata = file.readHeaderMetadata(file.choosePartition("header"));
    EXPECT_EQ(metadata.offset, file.partitions()[0].endOffset());
}

TEST(MXFFile, ADamagedRandomIndexFallsBackToTheFooterChain) {
    Bytes bytes = syntheticFile(FileShape());
    bytes[bytes.size() - 12] = 0x7F; // the footer's offset in the index now points nowhere
    MemoryDataSource source(bytes.data(), bytes.size());
    const MXFFile file(source);
    EXPECT_EQ(file.discovery(), "footer chain");
    ASSERT_EQ(file.problems().size(), 1U);
    EXPECT_NE(file.problems()[0].find("random index pack ignored"), std::string::npos);
}

struct BadFile {
    const char* name;
    Bytes bytes;
    const char* messagePart;
};
VELLUM_PRINT_CASE_NAME(BadFile)

class MXFFileRefuses : public ::testing::TestWithParam<BadFile> {};

TEST_P(MXFFileRefuses, WithAClearError) {
    const auto& c = GetParam();
    MemoryDataSource source(c.bytes.data(), c.bytes.size());
    EXPECT_THROW_MSG_HAS(const MXFFile file(source);
                         file.readHeaderMetadata(file.choosePartition("header")), BaseException,
                         c.messagePart);
}

Bytes truncated(Bytes b, std::size_t keep) {
    b.resize(keep);
    return b;
}

Bytes withHeaderByteCount(std::uint64_t count) {
    Bytes b = klv(partitionKey(2, 4), partitionValue(0, 0, 0, count));
    append(b, emptyPrimer());
    return b;
}

Bytes withoutPrimer() {
    Bytes b = klv(partitionKey(2, 4), partitionValue(0, 0, 0, 30));
    append(b, klv(fillKey, Bytes(30, 0)));
    return b;
}

INSTANTIATE_TEST_SUITE_P(
    Files, MXFFileRefuses,
    ::testing::Values(BadFile{"empty", {}, "not an MXF file: 0 bytes"},
                      BadFile{"text", Bytes(200, 'a'),
                              "not an MXF file: no header partition pack within the first 200"},
                      BadFile{"truncatedPartitionPack", truncated(syntheticFile(FileShape()), 60),
                              "triplet at offset 0 claims 88 bytes, but only 40 remain"},
                      BadFile{"shortPartitionPack", klv(partitionKey(2, 4), Bytes(50, 0)),
                              "needs at least 88 bytes, this one has 50"},
                      BadFile{"headerMetadataPastTheEnd", withHeaderByteCount(1000),
                              "claims 1000 bytes from offset 108, but the file ends after 28"},
                      BadFile{"noPrimer", withoutPrimer(), "expected the primer pack"},
                      BadFile{"noHeaderMetadata", withHeaderByteCount(0),
                              "carries no header metadata"}),
    [](const auto& p) { return p.param.name; });

TEST(MXFFile, ChoosesPartitionsByName) {
    const Bytes bytes = syntheticFile(FileShape());
    MemoryDataSource source(bytes.data(), bytes.size());
    const MXFFile file(source);
    EXPECT_EQ(&file.choosePartition("0"), &file.partitions()[0]);
    EXPECT_THROW(file.choosePartition("footer"), Vellum::Exceptions::InvalidFormat)
        << "the footer has no header metadata";
    EXPECT_THROW(file.choosePartition("3"), Vellum::Exceptions::InvalidFormat);
    EXPECT_THROW(file.choosePartition("-1"), Vellum::Exceptions::InvalidFormat);
    EXPECT_THROW(file.choosePartition("body"), Vellum::Exceptions::InvalidFormat);
}

} // namespace
