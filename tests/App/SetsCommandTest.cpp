#include "CliSupport.h"
#include "Support/Samples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using VellumTest::parseSetsListing;
using VellumTest::runVellum;
using VellumTest::SetLine;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";

// Set names by instance UID, from the listing itself.
std::map<std::string, std::string> namesByUid(const std::vector<SetLine>& sets) {
    std::map<std::string, std::string> names;
    for (const SetLine& set : sets) {
        names[set.uid] = set.name;
    }
    return names;
}

using SetsOnSample = VellumTest::ProgramOnSample;

TEST_P(SetsOnSample, ListsEverySetOnceWithReferencesThatLeadToListedSets) {
    const std::string path = VellumTest::sampleDir() + "/" + GetParam();
    const auto run = runVellum({"sets", path}, m_dir);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const auto info = runVellum({"info", path}, m_dir);
    ASSERT_EQ(info.exitCode, 0) << info.err;

    const auto sets = parseSetsListing(run.out);
    ASSERT_EQ(sets.size(), VellumTest::countAfter(info.out, "sets"));
    EXPECT_EQ(sets.size(), VellumTest::countAfter(run.out, "sets"));
    EXPECT_EQ(sets.front().name, "Preface");
    EXPECT_EQ(run.out.find("dangling"), std::string::npos);
    EXPECT_NE(run.out.find("dark metadata sets: 0\n"), std::string::npos);

    const auto names = namesByUid(sets);
    EXPECT_EQ(names.size(), sets.size()) << "instance UIDs are unique";
    std::size_t references = 0;
    for (std::size_t i = 0; i < sets.size(); ++i) {
        SCOPED_TRACE(sets[i].name + " " + sets[i].uid);
        EXPECT_EQ(sets[i].index, i);
        EXPECT_EQ(sets[i].key.size(), 47U);
        EXPECT_GT(sets[i].values, 0U);
        for (const auto& reference : sets[i].references) {
            ++references;
            ASSERT_EQ(names.count(reference.uid), 1U) << reference.element;
            // The target named is the set listed with that UID (weak ones are marked so).
            EXPECT_EQ(reference.target.substr(0, reference.target.find(',')),
                      names.at(reference.uid));
        }
    }
    // Every set but the Preface is reached through at least one strong reference.
    EXPECT_GE(references, sets.size() - 1);
}

INSTANTIATE_TEST_SUITE_P(Samples, SetsOnSample, ::testing::ValuesIn(VellumTest::sampleNames()),
                         VellumTest::sampleTestName);

using Sets = VellumTest::ProgramTest;

TEST_F(Sets, AReferenceToNoSetIsDanglingAndAnUnknownSetIsListed) {
    Bytes bytes = VellumTest::readFile(bitexactSample);
    // The ContentStorage's InstanceUID item (tag 3C.0A, 16 bytes): change the UID's last byte,
    // so the Preface's reference to it leads nowhere.
    const Bytes uid = {0x3C, 0x0A, 0x00, 0x10, 0xAD, 0xAB, 0x44, 0x24, 0x2F, 0x25,
                       0x4D, 0xC7, 0x92, 0xFF, 0x00, 0x0D, 0x00, 0x00, 0x00, 0x00};
    Bytes changed = uid;
    changed.back() = 0x77;
    VellumTest::replaceFirst(bytes, uid, changed);
    // The first TimecodeComponent gets a key no dictionary knows.
    const Bytes timecode = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                            0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x14, 0x00};
    Bytes unknown = timecode;
    unknown[14] = 0xF0;
    VellumTest::replaceFirst(bytes, timecode, unknown);

    const auto run = runVellum({"sets", m_dir.write("changed.mxf", bytes)}, m_dir);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto sets = parseSetsListing(run.out);
    ASSERT_GE(sets.size(), 7U);
    const auto& preface = sets[0];
    ASSERT_EQ(preface.name, "Preface");
    bool dangling = false;
    for (const auto& reference : preface.references) {
        if (reference.element == "ContentStorage") {
            dangling = true;
            EXPECT_EQ(reference.target, "dangling");
            EXPECT_EQ(reference.uid, "AD.AB.44.24.2F.25.4D.C7.92.FF.00.0D.00.00.00.00");
        }
    }
    EXPECT_TRUE(dangling) << run.out;
    EXPECT_EQ(sets[2].name, "ContentStorage");
    EXPECT_EQ(sets[2].uid, "AD.AB.44.24.2F.25.4D.C7.92.FF.00.0D.00.00.00.77");
    EXPECT_EQ(sets[6].name, "(unknown)");
    EXPECT_EQ(sets[6].key, "06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.F0.00");
    ASSERT_EQ(sets[5].references.size(), 1U);
    EXPECT_EQ(sets[5].references[0].target, "unknown set");
}

} // namespace
