#include "CliSupport.h"
#include "Support/Samples.h"
#include "XmlCheck.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using VellumTest::runVellum;
using VellumTest::summariseXml;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";
const std::string utf8Declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"";

const Bytes prefaceKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                          0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2F, 0x00};
const Bytes identificationKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                 0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x30, 0x00};
const Bytes as11CoreFrameworkKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                    0x0D, 0x01, 0x07, 0x01, 0x0B, 0x01, 0x01, 0x00};

using ToXml = VellumTest::ProgramTest;

// The encoding and layout options of to-xml and of from-xml --xml: the same document in
// other bytes.
TEST_F(ToXml, EncodingAndLayoutOptionsKeepTheDocument) {
    const std::string doc = m_dir.file("doc.xml");
    ASSERT_EQ(runVellum({"to-xml", bitexactSample, "-o", doc}, m_dir).exitCode, 0);
    const std::string utf16Start("\xFF\xFE<\0?\0", 6);
    const struct {
        std::vector<std::string> options;
        std::string start;
        std::string lineBreak; // in the encoding; empty for none at all
        bool asPlain;          // the very bytes of the default
    } cases[] = {
        {{"--encoding=utf-8"}, utf8Declaration, "\n", true},
        {{"--encoding", "utf-16"}, utf16Start, std::string("\n\0", 2), false},
        {{"--compact"}, utf8Declaration, "", false},
        {{"--compact", "--encoding", "utf-16"}, utf16Start, "", false},
    };
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"to-xml", bitexactSample}, {"from-xml", "--xml", doc}}) {
        const auto plain = runVellum(command, m_dir);
        ASSERT_EQ(plain.exitCode, 0) << plain.err;
        EXPECT_NE(plain.out.find("\n  <s377m:Preface "), std::string::npos) << "pretty by default";
        for (const auto& c : cases) {
            SCOPED_TRACE(command.front() + " " + c.options.back());
            std::vector<std::string> arguments = command;
            arguments.insert(arguments.end(), c.options.begin(), c.options.end());
            const auto run = runVellum(arguments, m_dir);
            ASSERT_EQ(run.exitCode, 0) << run.err;
            EXPECT_EQ(run.out.rfind(c.start, 0), 0U);
            EXPECT_EQ(run.out.find(c.lineBreak.empty() ? "\n" : c.lineBreak) != std::string::npos,
                      !c.lineBreak.empty());
            EXPECT_EQ(summariseXml(run.out).canonical, summariseXml(plain.out).canonical);
            EXPECT_EQ(run.out == plain.out, c.asPlain);
        }
    }
}

TEST_F(ToXml, StructuralOnlyStopsAtSetsThatAreNotStructural) {
    // The Identification set under the key of a descriptive (not structural) set: nested in
    // the Preface when every reference is followed, else named by identifier and written by
    // the floating pass.
    Bytes file = VellumTest::readFile(bitexactSample);
    VellumTest::replaceFirst(file, identificationKey, as11CoreFrameworkKey);
    const std::string path = m_dir.write("descriptive.mxf", file);
    const auto all = runVellum({"to-xml", "--typed-references", path}, m_dir);
    const auto structural =
        runVellum({"to-xml", "--typed-references", "--structural-only", path}, m_dir);
    ASSERT_EQ(all.exitCode, 0) << all.err;
    ASSERT_EQ(structural.exitCode, 0) << structural.err;
    EXPECT_EQ(summariseXml(structural.out).rootName, "s377m:MetadataSets");
    const std::string nested = "<s377m:Identifications>\n      <as11:AS11CoreFramework rp210";
    EXPECT_NE(all.out.find(nested), std::string::npos) << all.out;
    EXPECT_EQ(structural.out.find(nested), std::string::npos);
    EXPECT_NE(structural.out.find("<as11:AS11CoreFramework_REF"), std::string::npos);
    EXPECT_NE(structural.out.find("<groups:FloatingDarkMetadata>\n    <as11:AS11CoreFramework"),
              std::string::npos)
        << structural.out;
    const auto plain = runVellum({"to-xml", bitexactSample}, m_dir);
    const auto plainStructural = runVellum({"to-xml", "--structural-only", bitexactSample}, m_dir);
    EXPECT_EQ(plain.out, plainStructural.out) << "every set of the sample is structural";
}

TEST_F(ToXml, FailuresExitWithOneLineAndLeaveTheOutputAlone) {
    const std::string text = "This is a text file, not MXF.\n";
    const Bytes sample = VellumTest::readFile(bitexactSample);
    const auto region = VellumTest::findHeaderRegion(sample, 0);
    // The Preface under a key the dictionary does not know, so that the file has none.
    Bytes noPreface = sample;
    Bytes unknownKey = prefaceKey;
    unknownKey[12] = 0x02;
    VellumTest::replaceFirst(noPreface, prefaceKey, unknownKey);
    const auto cutAfter = [&](std::uint64_t size) {
        return Bytes(sample.begin(), sample.begin() + static_cast<std::ptrdiff_t>(size));
    };
    const struct {
        std::vector<std::string> arguments;
        std::string problem;
    } cases[] = {
        {{"to-xml", m_dir.file("missing.mxf"), "-o", "OUT"}, "cannot open"},
        {{"to-xml", m_dir.write("text.mxf", Bytes(text.begin(), text.end())), "-o", "OUT"},
         "not an MXF file"},
        {{"to-xml", m_dir.write("cut.mxf", cutAfter(2512)), "-o", "OUT"},
         "claims 5632 bytes from offset 512"},
        {{"to-xml", m_dir.write("no-preface.mxf", noPreface), "-o", "OUT"},
         "the header metadata has no Preface"},
        {{"header", m_dir.write("primer-cut.mxf", cutAfter(region.offset + 100)), "-o", "OUT"},
         "at offset 512 claims 1808 bytes"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.problem);
        const auto run = VellumTest::expectFailureKeepsOutput(c.arguments, c.problem, m_dir);
        EXPECT_NE(run.err.find(c.arguments[1]), std::string::npos) << "names the file: " << run.err;
    }
}

} // namespace
