#include "CliSupport.h"
#include "Support/Samples.h"
#include "XmlCheck.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using VellumTest::runVellum;
using VellumTest::summariseXml;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";
const std::string utf8Declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"";

std::size_t setCount(const std::string& path, const std::string& which) {
    return Vellum::Metadata::PartitionMetadata::readFile(
               path, which, Vellum::MetaMetadata::Dictionary::builtIn())
        ->sets()
        .size();
}

// The bitexact sample with one byte of a set key changed: `from` (16 bytes) becomes a key the
// dictionary does not know, so the set is read as an unknown one.
std::string patchedSample(const VellumTest::TempDir& dir, const std::string& name,
                          const Bytes& key) {
    Bytes file = VellumTest::readFile(bitexactSample);
    Bytes changed = key;
    changed[12] = 0x02;
    VellumTest::replaceFirst(file, key, changed);
    return dir.write(name, file);
}

const Bytes prefaceKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                          0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2F, 0x00};
const Bytes identificationKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                 0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x30, 0x00};
const Bytes as11CoreFrameworkKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                    0x0D, 0x01, 0x07, 0x01, 0x0B, 0x01, 0x01, 0x00};

using ToXml = VellumTest::ProgramTest;

TEST_F(ToXml, Utf16HasAByteOrderMarkAndTheSameDocument) {
    const auto utf8 = runVellum({"to-xml", bitexactSample}, m_dir);
    const auto utf16 = runVellum({"to-xml", "--encoding", "utf-16", bitexactSample}, m_dir);
    ASSERT_EQ(utf8.exitCode, 0) << utf8.err;
    ASSERT_EQ(utf16.exitCode, 0) << utf16.err;
    ASSERT_GE(utf16.out.size(), 4U);
    EXPECT_EQ(static_cast<unsigned char>(utf16.out[0]), 0xFF);
    EXPECT_EQ(static_cast<unsigned char>(utf16.out[1]), 0xFE);
    EXPECT_EQ(utf16.out.substr(2, 4), std::string("<\0?\0", 4));
    EXPECT_EQ(summariseXml(utf16.out).canonical, summariseXml(utf8.out).canonical);
    const auto explicitUtf8 = runVellum({"to-xml", "--encoding=utf-8", bitexactSample}, m_dir);
    EXPECT_EQ(explicitUtf8.out, utf8.out);
}

TEST_F(ToXml, CompactHasNoLineBreaksButTheSameDocument) {
    const auto pretty = runVellum({"to-xml", bitexactSample}, m_dir);
    const auto compact = runVellum({"to-xml", "--compact", bitexactSample}, m_dir);
    ASSERT_EQ(pretty.exitCode, 0) << pretty.err;
    ASSERT_EQ(compact.exitCode, 0) << compact.err;
    EXPECT_NE(pretty.out.find("\n  <s377m:Preface "), std::string::npos) << "pretty by default";
    EXPECT_EQ(compact.out.find('\n'), std::string::npos);
    EXPECT_EQ(compact.out.rfind(utf8Declaration, 0), 0U);
    EXPECT_LT(compact.out.size(), pretty.out.size());
    EXPECT_EQ(summariseXml(compact.out).canonical, summariseXml(pretty.out).canonical);
}

TEST_F(ToXml, OutputFileHoldsWhatStandardOutputGets) {
    const auto toStdout = runVellum({"to-xml", "--typed-references", bitexactSample}, m_dir);
    ASSERT_EQ(toStdout.exitCode, 0) << toStdout.err;
    const std::string output = m_dir.file("out.xml");
    m_dir.write("out.xml", {'o', 'l', 'd'});
    for (const char* option : {"-o", "--output"}) {
        const auto toFile =
            runVellum({"to-xml", bitexactSample, "--typed-references", option, output}, m_dir);
        ASSERT_EQ(toFile.exitCode, 0) << toFile.err;
        EXPECT_EQ(toFile.out, "");
        EXPECT_EQ(toFile.err, "");
        const Bytes written = VellumTest::readFile(output);
        EXPECT_EQ(std::string(written.begin(), written.end()), toStdout.out);
    }
    const auto dash = runVellum({"to-xml", "--typed-references", "-o", "-", bitexactSample}, m_dir);
    EXPECT_EQ(dash.out, toStdout.out);
}

TEST_F(ToXml, ReadsTheChosenPartition) {
    // GStreamer repeats the header metadata in its footer partition (the third).
    const std::string path = VellumTest::sampleDir() + "/gst-mxfmux-h264.mxf";
    for (const char* which : {"footer", "2"}) {
        SCOPED_TRACE(which);
        const auto run = runVellum({"to-xml", "--partition", which, path}, m_dir);
        ASSERT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(summariseXml(run.out).sets, setCount(path, "footer"));
    }
    const auto body = runVellum({"to-xml", "--partition", "1", path}, m_dir);
    EXPECT_EQ(body.exitCode, 1);
    EXPECT_TRUE(VellumTest::isOneErrorLine(body.err)) << body.err;
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
    struct Case {
        std::string name;
        std::string input;
        std::string problem;
    };
    const std::vector<Case> cases = {
        {"missing", m_dir.file("missing.mxf"), "cannot open"},
        {"text", m_dir.write("text.mxf", Bytes(text.begin(), text.end())), "not an MXF file"},
        {"cut", m_dir.write("cut.mxf", Bytes(sample.begin(), sample.begin() + 2512)),
         "claims 5632 bytes from offset 512"},
        {"no-preface", patchedSample(m_dir, "no-preface.mxf", prefaceKey),
         "the header metadata has no Preface"},
    };
    std::filesystem::create_directory(m_dir.path() / "out");
    const std::string output = m_dir.file("out/old.xml");
    const Bytes old = {'o', 'l', 'd'};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        m_dir.write("out/old.xml", old);
        const auto run = runVellum({"to-xml", c.input, "-o", output}, m_dir);
        EXPECT_TRUE(VellumTest::failedWith(run, 1, c.problem));
        EXPECT_NE(run.err.find(c.input), std::string::npos) << "names the file: " << run.err;
        EXPECT_EQ(VellumTest::readFile(output), old);
        const auto entries =
            std::distance(std::filesystem::directory_iterator(m_dir.path() / "out"),
                          std::filesystem::directory_iterator());
        EXPECT_EQ(entries, 1) << "no temporary file is left behind";
    }
}

TEST_F(ToXml, AnOutputThatCannotBeWrittenFails) {
    std::filesystem::create_directory(m_dir.path() / "folder");
    const struct {
        std::string output;
        std::string problem;
    } cases[] = {
        {m_dir.file("folder"), "is a directory, not a file"},
        {m_dir.file("no-such-folder/out.xml"), "cannot create"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.output);
        EXPECT_TRUE(VellumTest::failedWith(
            runVellum({"to-xml", bitexactSample, "-o", c.output}, m_dir), 1, c.problem));
    }
    EXPECT_TRUE(std::filesystem::is_directory(m_dir.path() / "folder"));
}

TEST_F(ToXml, BadCommandLinesExitWithStatusTwo) {
    VellumTest::expectUsageErrors(
        "to-xml",
        {{{}, "missing FILE"},
         {{bitexactSample, "other.mxf"}, "unexpected argument 'other.mxf'"},
         {{"--encoding", "latin-1", bitexactSample}, "needs utf-8 or utf-16, not 'latin-1'"},
         {{"--encoding", "UTF-8", bitexactSample}, "not 'UTF-8'"},
         {{"--encoding", bitexactSample}, "missing FILE"},
         {{"-o", "", bitexactSample}, "needs a file name"},
         {{"--compact=yes", bitexactSample}, "takes no value"},
         {{"--compact", "--compact", bitexactSample}, "given more than once"},
         {{"--xml", bitexactSample}, "unknown option '--xml'"}},
        "vellum to-xml", m_dir);
}

} // namespace
