#include "CliSupport.h"
#include "Support/PrintCase.h"
#include "Support/Samples.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using VellumTest::namesOffset;
using VellumTest::parseListing;
using VellumTest::runVellum;
using VellumTest::TripletLine;
using VellumTest::walkKlv;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";

// Expects the listed triplets to be those walked, with every offset moved by `shift`.
void expectSameTriplets(const std::vector<TripletLine>& listed,
                        const std::vector<TripletLine>& walked, std::uint64_t shift = 0) {
    ASSERT_EQ(listed.size(), walked.size());
    for (std::size_t i = 0; i < walked.size(); ++i) {
        SCOPED_TRACE("triplet " + std::to_string(i));
        EXPECT_EQ(listed[i].offset, walked[i].offset + shift);
        EXPECT_EQ(listed[i].key, walked[i].key);
        EXPECT_EQ(listed[i].length, walked[i].length);
        EXPECT_EQ(listed[i].octets, walked[i].octets);
    }
}

using KlvOnSample = VellumTest::ProgramOnSample;

TEST_P(KlvOnSample, ListsExactlyTheTripletsOfAnIndependentWalk) {
    const std::string path = VellumTest::sampleDir() + "/" + GetParam();
    const auto walk = walkKlv(VellumTest::readFile(path), 0);
    ASSERT_TRUE(walk.complete);
    const auto run = runVellum({"klv", path}, m_dir);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const auto listed = parseListing(run.out);
    expectSameTriplets(listed, walk.triplets);
    EXPECT_NE(run.out.find("total: " + std::to_string(walk.triplets.size()) + " triplets\n"),
              std::string::npos);
    EXPECT_EQ(run.out.find("run-in"), std::string::npos);
    // Every sample starts with a closed, complete header partition followed by the primer
    // (possibly after fill), and ends with a random index pack.
    ASSERT_FALSE(listed.empty());
    EXPECT_EQ(listed.front().name, "header partition pack (closed, complete)");
    EXPECT_EQ(listed.back().name, "random index pack");
    const bool primerEarly =
        listed.size() > 2 && (listed[1].name == "primer pack" ||
                              (listed[1].name == "fill" && listed[2].name == "primer pack"));
    EXPECT_TRUE(primerEarly);
}

INSTANTIATE_TEST_SUITE_P(Samples, KlvOnSample, ::testing::ValuesIn(VellumTest::sampleNames()),
                         VellumTest::sampleTestName);

TEST(KlvSamples, AllTwentySamplesAreThere) {
    EXPECT_EQ(VellumTest::sampleNames().size(), 20U);
}

using Klv = VellumTest::ProgramTest;

// Keys and the names the listing must give them.
const std::vector<std::pair<std::string, std::string>> keyNames = {
    {"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.02.01.00", "header partition pack (open, incomplete)"},
    {"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.02.02.00",
     "header partition pack (closed, incomplete)"},
    {"06.0E.2B.34.02.05.01.7F.0D.01.02.01.01.03.03.00", "body partition pack (open, complete)"},
    {"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.04.04.00", "footer partition pack (closed, complete)"},
    {"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.03.07.00",
     "body partition pack (unknown status 0x07)"},
    {"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.05.01.00", "primer pack"},
    {"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.11.01.00", "random index pack"},
    {"06.0E.2B.34.01.01.01.01.03.01.02.10.01.00.00.00", "fill"},
    {"06.0E.2B.34.01.01.01.02.03.01.02.10.01.00.00.00", "fill"},
    {"06.0E.2B.34.02.53.01.01.0D.01.02.01.01.10.01.00", "index table segment"},
    {"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00", "local set"},
    {"06.0E.2B.34.02.13.01.01.0D.01.04.01.01.01.01.00", "local set"},
    {"06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.00", "essence element (picture)"},
    {"06.0E.2B.34.01.02.01.01.0D.01.03.01.16.01.03.00", "essence element (sound)"},
    {"06.0E.2B.34.01.02.01.01.0D.01.03.01.17.01.01.00", "essence element (data)"},
    {"06.0E.2B.34.02.05.01.01.0D.01.03.01.04.01.01.00", "system item"},
    {"06.0E.2B.34.04.01.01.01.04.01.01.01.01.00.00.00", ""},
    {"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.06.01.00", ""},
    // An AUID-style key, as some editing systems write: listed, and the walk goes on.
    {"80.0E.2B.34.02.05.01.01.0D.01.02.01.01.02.01.00", "non-SMPTE key"},
    {"06.0E.2B.34.01.01.01.01.03.01.02.10.01.00.00.00", "fill"},
};

// The bytes of a key's dotted-hex text.
Bytes keyBytes(const std::string& text) {
    Bytes bytes;
    for (std::size_t at = 0; at < text.size(); at += 3) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(text.substr(at, 2), nullptr, 16)));
    }
    return bytes;
}

TEST_F(Klv, NamesTheKeysItKnows) {
    Bytes file;
    for (const auto& keyName : keyNames) {
        const Bytes key = keyBytes(keyName.first);
        file.insert(file.end(), key.begin(), key.end());
        file.insert(file.end(), {0x81, 0x01, 0xEE}); // long-form length 1, one value byte
    }
    const auto run = runVellum({"klv", m_dir.write("keys.mxf", file)}, m_dir);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto listed = parseListing(run.out);
    ASSERT_EQ(listed.size(), keyNames.size());
    for (std::size_t i = 0; i < keyNames.size(); ++i) {
        EXPECT_EQ(listed[i].key, keyNames[i].first);
        EXPECT_EQ(listed[i].name, keyNames[i].second) << listed[i].key;
        EXPECT_EQ(listed[i].offset, i * 19);
        EXPECT_EQ(listed[i].length, 1U);
        EXPECT_EQ(listed[i].octets, 2U);
    }
}

// Where a damaged copy of a sample stops being readable.
enum class Damage { CutInValue, CutInLength, CutInKey };

struct DamageCase {
    const char* name;
    const char* sample;
    Damage damage;
    const char* problem; // what the error message must say besides the offset
};

// Names the case in test listings instead of dumping its bytes.
VELLUM_PRINT_CASE_NAME(DamageCase)

class KlvOnDamagedFile : public ::testing::TestWithParam<DamageCase> {
protected:
    VellumTest::TempDir m_dir;
};

TEST_P(KlvOnDamagedFile, ListsTheTripletsBeforeTheFaultThenFails) {
    const DamageCase& c = GetParam();
    Bytes bytes = VellumTest::readFile(VellumTest::sampleDir() + "/" + c.sample);
    const auto walk = walkKlv(bytes, 0);
    // The first triplet after the first with a long-form length and a value of 2 bytes or more.
    std::size_t index = 1;
    while (walk.triplets.at(index).octets < 2 || walk.triplets.at(index).length < 2) {
        ++index;
    }
    const TripletLine& broken = walk.triplets[index];
    const std::size_t valueStart = broken.offset + 16 + broken.octets;
    switch (c.damage) {
    case Damage::CutInValue:
        bytes.resize(valueStart + broken.length / 2);
        break;
    case Damage::CutInLength:
        bytes.resize(broken.offset + 17);
        break;
    case Damage::CutInKey:
        bytes.resize(broken.offset + 8);
        break;
    }
    const auto run = runVellum({"klv", m_dir.write("damaged.mxf", bytes)}, m_dir);
    EXPECT_EQ(run.exitCode, 1);
    const std::vector<TripletLine> before(
        walk.triplets.begin(), walk.triplets.begin() + static_cast<std::ptrdiff_t>(index));
    expectSameTriplets(parseListing(run.out), before);
    EXPECT_EQ(run.out.find("total:"), std::string::npos);
    EXPECT_TRUE(VellumTest::isOneErrorLine(run.err)) << run.err;
    EXPECT_TRUE(namesOffset(run.err, broken.offset)) << run.err;
    EXPECT_NE(run.err.find(c.problem), std::string::npos) << run.err;
}

const char* const ffmpegSample = "ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";
const char* const gstreamerSample = "gst-mxfmux-h264.mxf";

INSTANTIATE_TEST_SUITE_P(
    Damages, KlvOnDamagedFile,
    ::testing::Values(
        DamageCase{"FFmpegCutInValue", ffmpegSample, Damage::CutInValue, "only"},
        DamageCase{"FFmpegCutInLength", ffmpegSample, Damage::CutInLength, "BER length"},
        DamageCase{"FFmpegCutInKey", ffmpegSample, Damage::CutInKey, "key needs 16 bytes"},
        DamageCase{"GStreamerCutInValue", gstreamerSample, Damage::CutInValue, "only"},
        DamageCase{"GStreamerCutInLength", gstreamerSample, Damage::CutInLength, "BER length"}),
    [](const auto& p) { return std::string(p.param.name); });

TEST_F(Klv, SkipsARunInOfUpTo65535Bytes) {
    const Bytes sample = VellumTest::readFile(bitexactSample);
    const auto walk = walkKlv(sample, 0);
    // A SMPTE key that is not a partition pack, inside the run-in, must not be taken for one.
    const Bytes decoy = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01, 0x03, 0x01, 0x02, 0x10};
    for (const std::size_t runIn : {std::size_t{1}, std::size_t{100}, std::size_t{65535}}) {
        SCOPED_TRACE(runIn);
        Bytes bytes(runIn, 'R');
        if (runIn > decoy.size() + 10) {
            std::copy(decoy.begin(), decoy.end(), bytes.begin() + 10);
        }
        bytes.insert(bytes.end(), sample.begin(), sample.end());
        const auto run = runVellum({"klv", m_dir.write("runin.mxf", bytes)}, m_dir);
        ASSERT_EQ(run.exitCode, 0) << run.err;
        EXPECT_NE(run.out.find("run-in: " + std::to_string(runIn) + " bytes"), std::string::npos);
        expectSameTriplets(parseListing(run.out), walk.triplets, runIn);
    }
}

TEST_F(Klv, LimitStopsAfterNTriplets) {
    const std::size_t total = walkKlv(VellumTest::readFile(bitexactSample), 0).triplets.size();
    struct Case {
        std::vector<std::string> arguments;
        std::size_t listed;
        bool stopped;
    };
    const std::vector<Case> cases = {
        {{"--limit", "1", bitexactSample}, 1, true},
        {{bitexactSample, "--limit=3"}, 3, true},
        {{"--limit", std::to_string(total - 1), bitexactSample}, total - 1, true},
        {{"--limit", std::to_string(total), bitexactSample}, total, false},
        {{"--limit", "18446744073709551615", bitexactSample}, total, false},
        // A file name that starts with a dash follows "--".
        {{"--limit", "2", "--", m_dir.write("-dash.mxf", VellumTest::readFile(bitexactSample))},
         2,
         true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.listed);
        std::vector<std::string> arguments = {"klv"};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        const auto run = runVellum(arguments, m_dir);
        ASSERT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(parseListing(run.out).size(), c.listed);
        EXPECT_EQ(run.out.find("stopped by --limit") != std::string::npos, c.stopped);
    }
}

} // namespace
