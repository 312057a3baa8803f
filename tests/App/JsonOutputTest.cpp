#include "CliSupport.h"
#include "ModelCheck.h"
#include "Support/Samples.h"

#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using VellumTest::runVellum;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";
const std::string otherSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm.mxf";

class JsonOnSample : public ::testing::TestWithParam<std::string> {
protected:
    Json runJson(const std::vector<std::string>& arguments) {
        const auto run = runVellum(arguments, m_dir);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(run.err, "");
        return Json::parse(run.out); // throws, failing the test, when it is not one document
    }

    VellumTest::TempDir m_dir;
};

// The partitions the manifest gives for a bundled sample, from its "- partitions: " line of
// entries "kind/closed-complete(hbc=N,ibc=M)".
std::vector<VellumTest::PartitionLine> manifestPartitions(const std::string& sample) {
    std::ifstream in(VellumTest::sampleDir() + "/MANIFEST.md");
    std::string line;
    while (std::getline(in, line) && line != "### " + sample) {
    }
    while (std::getline(in, line) && line.rfind("- partitions: ", 0) != 0) {
    }
    std::vector<VellumTest::PartitionLine> partitions;
    const std::regex entry(R"((\w+)/(\w+)-(\w+)\(hbc=(\d+),ibc=(\d+)\))");
    for (std::sregex_iterator it(line.begin(), line.end(), entry), end; it != end; ++it) {
        VellumTest::PartitionLine partition;
        partition.kind = (*it)[1];
        partition.status = std::string((*it)[2]) + " " + std::string((*it)[3]);
        partition.headerBytes = std::stoull((*it)[4]);
        partition.indexBytes = std::stoull((*it)[5]);
        partitions.push_back(partition);
    }
    return partitions;
}

TEST_P(JsonOnSample, InfoAgreesWithTheModelTheTextListingAndTheManifest) {
    const auto model = VellumTest::readModel(GetParam());
    const Json info = runJson({"info", "--json", GetParam()});
    const Json& header = info.at("headerMetadata");
    EXPECT_EQ(header.at("sets").get<std::size_t>(), model->sets().size());
    EXPECT_EQ(header.at("darkMetadataSets").get<std::size_t>(), model->darkCount());
    EXPECT_EQ(header.at("primerEntries").get<std::size_t>(), model->partitionDictionary().size());
    std::map<std::string, std::uint64_t> byName; // set name (from the model) to count
    for (const auto* set : model->sets()) {
        ++byName[set->definition() != nullptr
                     ? Vellum::Utils::wstringToString(set->definition()->name())
                     : "(unknown set " + set->key().toUtf8() + ")"];
    }
    std::map<std::string, std::uint64_t> listedByName;
    for (const Json& entry : header.at("setsByName")) {
        listedByName[entry.at("name")] += entry.at("count").get<std::uint64_t>();
    }
    EXPECT_EQ(listedByName, byName);
    EXPECT_EQ(info.at("file").at("name"), GetParam());

    // The text gives the same partitions and counts.
    const auto text = runVellum({"info", GetParam()}, m_dir);
    ASSERT_EQ(text.exitCode, 0) << text.err;
    EXPECT_EQ(text.err, "");
    EXPECT_EQ(VellumTest::parseInfoSetCounts(text.out), byName);
    EXPECT_EQ(VellumTest::countAfter(text.out, "sets"), model->sets().size());
    EXPECT_EQ(VellumTest::countAfter(text.out, "primer entries"),
              model->partitionDictionary().size());
    EXPECT_EQ(VellumTest::countAfter(text.out, "dark metadata sets"), model->darkCount());
    EXPECT_EQ(text.out.find("problems: none\n") != std::string::npos,
              info.at("file").at("problems").empty());
    const auto partitions = VellumTest::parseInfoPartitions(text.out);
    ASSERT_EQ(info.at("partitions").size(), partitions.size());
    for (std::size_t i = 0; i < partitions.size(); ++i) {
        const Json& partition = info.at("partitions")[i];
        EXPECT_EQ(partition.at("index"), i);
        EXPECT_EQ(partition.at("kind"), partitions[i].kind);
        EXPECT_EQ(partition.at("status"), partitions[i].status);
        EXPECT_EQ(partition.at("offset"), partitions[i].offset);
        EXPECT_EQ(partition.at("headerByteCount"), partitions[i].headerBytes);
        EXPECT_EQ(partition.at("indexByteCount"), partitions[i].indexBytes);
    }
    EXPECT_EQ(partitions.front().offset, 0U);
    EXPECT_EQ(header.at("size"), VellumTest::countAfter(text.out, "header metadata of partition 0 "
                                                                  "(header)"));

    // A bundled sample's partitions are those its manifest lists.
    const std::filesystem::path path(GetParam());
    if (path.parent_path() != VellumTest::sampleDir()) {
        return;
    }
    const auto expected = manifestPartitions(path.filename().string());
    ASSERT_EQ(partitions.size(), expected.size()) << text.out;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE("partition " + std::to_string(i));
        EXPECT_EQ(partitions[i].kind, expected[i].kind);
        EXPECT_EQ(partitions[i].status, expected[i].status);
        EXPECT_EQ(partitions[i].headerBytes, expected[i].headerBytes);
        EXPECT_EQ(partitions[i].indexBytes, expected[i].indexBytes);
    }
}

TEST_P(JsonOnSample, SetsAgreeWithTheModel) {
    const auto model = VellumTest::readModel(GetParam());
    const Json sets = runJson({"sets", "--json", GetParam()});
    ASSERT_EQ(sets.at("sets").size(), model->sets().size());
    std::vector<VellumTest::ModelReference> listed;
    for (std::size_t i = 0; i < model->sets().size(); ++i) {
        const auto& set = *model->sets()[i];
        const Json& entry = sets.at("sets")[i];
        EXPECT_EQ(entry.at("index"), i);
        EXPECT_EQ(entry.at("key"), set.key().toUtf8());
        const std::string uid = VellumTest::uidText(set);
        EXPECT_EQ(entry.at("instanceUID"), uid == "-" ? Json(nullptr) : Json(uid));
        EXPECT_EQ(entry.at("values"), set.valueCount());
        EXPECT_EQ(entry.at("name").is_null(), set.definition() == nullptr);
        for (const Json& reference : entry.at("references")) {
            listed.push_back({uid, reference.at("target"), reference.at("weak")});
            const std::size_t targets =
                model
                    ->findByInstanceUID(Vellum::Types::UUID(
                        Vellum::Utils::stringToWstring(reference.at("target").get<std::string>()),
                        Vellum::Types::DottedHex))
                    .size();
            EXPECT_EQ(reference.at("targetCount"), targets);
        }
    }
    auto expected = VellumTest::referencesOf(*model);
    std::sort(expected.begin(), expected.end());
    std::sort(listed.begin(), listed.end());
    EXPECT_EQ(listed, expected);
    EXPECT_EQ(sets.at("darkMetadataSets").size(), model->darkCount());

    // The text listing shows the same sets and references.
    const auto text = runVellum({"sets", GetParam()}, m_dir);
    ASSERT_EQ(text.exitCode, 0) << text.err;
    EXPECT_EQ(VellumTest::countAfter(text.out, "sets"), model->sets().size());
    EXPECT_EQ(VellumTest::countAfter(text.out, "dark metadata sets"), model->darkCount());
    const auto lines = VellumTest::parseSetsListing(text.out);
    ASSERT_EQ(lines.size(), model->sets().size());
    const auto orNull = [](const Json& value, const std::string& null) {
        return value.is_null() ? null : value.get<std::string>();
    };
    std::map<std::string, std::string> nameOf; // instance UID to set name, as listed
    for (const auto& line : lines) {
        nameOf[line.uid] = line.name;
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const Json& entry = sets.at("sets")[i];
        SCOPED_TRACE(lines[i].name + " " + lines[i].uid);
        EXPECT_EQ(lines[i].index, i);
        EXPECT_EQ(lines[i].name, orNull(entry.at("name"), "(unknown)"));
        EXPECT_EQ(lines[i].key, entry.at("key"));
        EXPECT_EQ(lines[i].uid, orNull(entry.at("instanceUID"), "-"));
        EXPECT_EQ(lines[i].values, entry.at("values"));
        ASSERT_EQ(lines[i].references.size(), entry.at("references").size());
        for (std::size_t j = 0; j < lines[i].references.size(); ++j) {
            const auto& line = lines[i].references[j];
            const Json& reference = entry.at("references")[j];
            const Json& item = reference.at("item");
            EXPECT_EQ(line.element, reference.at("element").get<std::string>() +
                                        (item.is_null() ? "" : "[" + item.dump() + "]"));
            EXPECT_EQ(line.uid, reference.at("target"));
            // The target is named as the set listed with that UID.
            const bool found = reference.at("targetCount") != 0;
            const std::string name = found ? nameOf.at(line.uid) : "dangling";
            EXPECT_EQ(orNull(reference.at("targetSet"), found ? "(unknown)" : "dangling"), name);
            EXPECT_EQ(line.target, (name == "(unknown)" ? "unknown set" : name) +
                                       (reference.at("weak") == true ? ", weak" : ""));
        }
    }
}

TEST_P(JsonOnSample, DiffOfAFileWithItselfIsEqual) {
    const Json diff = runJson({"diff", "--json", GetParam(), GetParam()});
    EXPECT_EQ(diff, Json::parse(R"({"equal": true, "differences": []})"));
}

INSTANTIATE_TEST_SUITE_P(Corpus, JsonOnSample, ::testing::ValuesIn(VellumTest::corpusPaths()),
                         VellumTest::sampleTestName);

TEST(Json, DiffListsTheDifferencesOfTheTextWithStatusOne) {
    VellumTest::TempDir dir;
    const auto text = runVellum({"diff", bitexactSample, otherSample}, dir);
    const auto json = runVellum({"diff", "--json", bitexactSample, otherSample}, dir);
    ASSERT_EQ(text.exitCode, 1) << text.err;
    ASSERT_EQ(json.exitCode, 1) << json.err;
    const Json diff = Json::parse(json.out);
    EXPECT_EQ(diff.at("equal"), false);
    std::vector<std::string> lines;
    std::istringstream in(text.out);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    ASSERT_EQ(diff.at("differences").size(), lines.size());
    ASSERT_FALSE(lines.empty());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const Json& difference = diff.at("differences")[i];
        // The text line starts with the kind in words ("item changed: ").
        std::string kind = difference.at("kind");
        std::string words;
        for (const char c : kind) {
            words += std::isupper(static_cast<unsigned char>(c)) != 0
                         ? std::string(" ") + static_cast<char>(std::tolower(c))
                         : std::string(1, c);
        }
        EXPECT_EQ(lines[i].rfind(words + ": " + difference.at("setName").get<std::string>(), 0), 0U)
            << lines[i];
        if (!difference.at("setIdentifier").is_null()) {
            EXPECT_NE(lines[i].find(difference.at("setIdentifier").get<std::string>()),
                      std::string::npos);
        }
    }
}

} // namespace
