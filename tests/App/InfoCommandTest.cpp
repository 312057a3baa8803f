#include "CliSupport.h"
#include "Support/Samples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using VellumTest::countAfter;
using VellumTest::parseInfoSetCounts;
using VellumTest::runVellum;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";

using Info = VellumTest::ProgramTest;

const char* const privateKey = "06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.F0.00";

TEST_F(Info, AUserDictionaryNamesAnUnknownSet) {
    const std::string file =
        m_dir.write("private.mxf", VellumTest::withUnknownTimecodeKey(bitexactSample));
    const std::string text = std::string("format\tvellum-dictionary\t1\n"
                                         "columns\tset\tkey\tname\tparent\n"
                                         "set\t") +
                             privateKey + "\tPrivateTimecode\tInterchangeObject\n";
    const std::string dictionary = m_dir.write("private.txt", Bytes(text.begin(), text.end()));

    const auto plain = runVellum({"info", file}, m_dir);
    ASSERT_EQ(plain.exitCode, 0) << plain.err;
    auto counts = parseInfoSetCounts(plain.out);
    EXPECT_EQ(counts[std::string("(unknown set ") + privateKey + ")"], 1U);
    EXPECT_EQ(counts["TimecodeComponent"], 1U);
    // Every item of a set the dictionary does not know is known elsewhere.
    EXPECT_EQ(countAfter(plain.out, "misplaced elements"), 6U);

    // The option may be given more than once; loading the same file again changes nothing.
    const auto named =
        runVellum({"info", "--dictionary", dictionary, file, "--dictionary=" + dictionary}, m_dir);
    ASSERT_EQ(named.exitCode, 0) << named.err;
    counts = parseInfoSetCounts(named.out);
    EXPECT_EQ(counts["PrivateTimecode"], 1U);
    EXPECT_EQ(counts.count(std::string("(unknown set ") + privateKey + ")"), 0U);
    // InstanceUID now has its place; the TimecodeComponent items are still misplaced.
    EXPECT_EQ(countAfter(named.out, "misplaced elements"), 5U);
}

TEST_F(Info, ListsTheStructureBeforeReportingBrokenHeaderMetadata) {
    const Bytes sample = VellumTest::readFile(bitexactSample);
    const auto region = VellumTest::findHeaderRegion(sample, 0);
    const Bytes cut(sample.begin(),
                    sample.begin() + static_cast<std::ptrdiff_t>(region.offset + 2000));
    const auto run = runVellum({"info", m_dir.write("cut.mxf", cut)}, m_dir);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.out.find("problem: "), std::string::npos) << run.out;
    ASSERT_EQ(VellumTest::parseInfoPartitions(run.out).size(), 1U) << run.out;
    EXPECT_EQ(run.out.find("sets by name"), std::string::npos);
    EXPECT_TRUE(VellumTest::isOneErrorLine(run.err)) << run.err;
    EXPECT_NE(run.err.find("claims 5632 bytes from offset 512"), std::string::npos) << run.err;
}

// Faults shared by the commands that read header metadata: each exits 1 with one error line.
TEST_F(Info, HeaderMetadataCommandsReportBadInputInOneLine) {
    const Bytes sample = VellumTest::readFile(bitexactSample);
    const auto region = VellumTest::findHeaderRegion(sample, 0);
    const std::string text = "This is a text file, not MXF.\n";
    const std::string notMxf = m_dir.write("text.mxf", Bytes(text.begin(), text.end()));
    const std::string cut = m_dir.write(
        "cut.mxf",
        Bytes(sample.begin(), sample.begin() + static_cast<std::ptrdiff_t>(region.offset + 2000)));
    const std::string badDictionary = m_dir.write("bad.txt", Bytes{'x', '\n'});
    struct Case {
        std::vector<std::string> arguments;
        std::string problem;
    };
    const std::vector<Case> cases = {
        {{notMxf}, "'" + notMxf + "': not an MXF file"},
        {{m_dir.file("missing.mxf")}, "cannot open"},
        {{m_dir.path().string()}, "is a directory"},
        {{cut}, "claims 5632 bytes from offset 512, but the file ends"},
        {{"--partition", "foo", bitexactSample}, "'foo' names no partition"},
        {{"--partition", "3", bitexactSample}, "an index from 0 to 2"},
        {{"--partition", "1", bitexactSample}, "body partition at offset 6144 carries no header"},
        {{"--partition", "footer", bitexactSample}, "footer partition at offset 72192 carries no"},
        {{"--dictionary", m_dir.file("none.txt"), bitexactSample}, "dictionary: cannot open"},
        {{"--dictionary", badDictionary, bitexactSample}, "dictionary: " + badDictionary + ":1:"},
    };
    for (const char* name : {"info", "sets", "header"}) {
        const std::string command = name;
        for (const Case& c : cases) {
            SCOPED_TRACE(command + " " + c.problem);
            std::vector<std::string> arguments = {command, "-o", m_dir.file("out.klv")};
            if (command != "header") {
                arguments.resize(1);
            }
            arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
            const auto run = runVellum(arguments, m_dir);
            EXPECT_EQ(run.exitCode, 1);
            EXPECT_TRUE(VellumTest::isOneErrorLine(run.err)) << run.err;
            EXPECT_NE(run.err.find(c.problem), std::string::npos) << run.err;
        }
    }
    EXPECT_FALSE(std::filesystem::exists(m_dir.file("out.klv")));
}

} // namespace
