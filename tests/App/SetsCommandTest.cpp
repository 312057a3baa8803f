#include "CliSupport.h"
#include "Support/Samples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using VellumTest::parseSetsListing;
using VellumTest::runVellum;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";

using Sets = VellumTest::ProgramTest;

TEST_F(Sets, AReferenceToNoSetIsDanglingAndAnUnknownSetIsListed) {
    // The first TimecodeComponent gets a key no dictionary knows.
    Bytes bytes = VellumTest::withUnknownTimecodeKey(bitexactSample);
    // The ContentStorage's InstanceUID item (tag 3C.0A, 16 bytes): change the UID's last byte,
    // so the Preface's reference to it leads nowhere.
    const Bytes uid = {0x3C, 0x0A, 0x00, 0x10, 0xAD, 0xAB, 0x44, 0x24, 0x2F, 0x25,
                       0x4D, 0xC7, 0x92, 0xFF, 0x00, 0x0D, 0x00, 0x00, 0x00, 0x00};
    Bytes changed = uid;
    changed.back() = 0x77;
    VellumTest::replaceFirst(bytes, uid, changed);

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
