#include "CliSupport.h"
#include "Support/Samples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using VellumTest::runVellum;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";

using FromXmlOnSample = VellumTest::ProgramOnSample;

// Every sample through to-xml and back, in both layouts: from-xml gives header metadata equal
// to the file's and, with --xml, the document again (identifiers are kept).
TEST_P(FromXmlOnSample, ImportsWhatToXmlWrote) {
    const std::string path = VellumTest::sampleDir() + "/" + GetParam();
    const std::string klv = m_dir.file("header.klv");
    for (const std::string layout : {"", "--typed-references"}) {
        SCOPED_TRACE(layout);
        const auto withLayout = [&](std::vector<std::string> arguments) {
            if (!layout.empty()) {
                arguments.insert(arguments.begin() + 1, layout);
            }
            return runVellum(arguments, m_dir);
        };
        const auto exported = withLayout({"to-xml", path});
        ASSERT_EQ(exported.exitCode, 0) << exported.err;
        EXPECT_EQ(exported.err, "");
        const std::string doc =
            m_dir.write("doc.xml", Bytes(exported.out.begin(), exported.out.end()));
        const auto imported = runVellum({"from-xml", doc, "-o", klv}, m_dir);
        ASSERT_EQ(imported.exitCode, 0) << imported.err;
        EXPECT_EQ(imported.out + imported.err, "");
        const auto diff = runVellum({"diff", path, klv}, m_dir);
        EXPECT_EQ(diff.exitCode, 0) << diff.out << diff.err;
        const auto again = withLayout({"from-xml", "--xml", doc});
        ASSERT_EQ(again.exitCode, 0) << again.err;
        EXPECT_EQ(again.out, exported.out);
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, FromXmlOnSample, ::testing::ValuesIn(VellumTest::sampleNames()),
                         VellumTest::sampleTestName);

class FromXml : public ::testing::Test {
protected:
    void SetUp() override {
        const auto run = runVellum({"to-xml", bitexactSample, "-o", m_document}, m_dir);
        ASSERT_EQ(run.exitCode, 0) << run.err;
    }

    VellumTest::TempDir m_dir;
    const std::string m_document = m_dir.file("doc.xml");
};

TEST_F(FromXml, VerboseSummarisesOnStdoutOrOnStderrForStandardOutput) {
    const std::string klv = m_dir.file("header.klv");
    const auto toFile = runVellum({"from-xml", "--verbose", m_document, "-o", klv}, m_dir);
    ASSERT_EQ(toFile.exitCode, 0) << toFile.err;
    const std::string expected = "imported 27 sets and 0 dark metadata sets from " + m_document +
                                 "; wrote " + std::to_string(VellumTest::readFile(klv).size()) +
                                 " bytes of header metadata to " + klv + "\n";
    EXPECT_EQ(toFile.out, expected);

    const auto toStdout = runVellum({"from-xml", "--verbose", "--xml", m_document}, m_dir);
    ASSERT_EQ(toStdout.exitCode, 0) << toStdout.err;
    EXPECT_EQ(toStdout.out.rfind("<?xml", 0), 0U);
    EXPECT_EQ(toStdout.err, "imported 27 sets and 0 dark metadata sets from " + m_document +
                                "; wrote " + std::to_string(toStdout.out.size()) +
                                " bytes of XML to standard output\n");
}

TEST_F(FromXml, FailuresExitWithOneLineAndLeaveTheOutputAlone) {
    const Bytes document = VellumTest::readFile(m_document);
    const std::string text(document.begin(), document.end());
    const std::string unclosed = text.substr(0, text.rfind("</s377m:MetadataSets>"));
    std::string mismatched = text;
    mismatched.replace(mismatched.find("</s377m:Preface>"), 16, "</s377m:Prefix>");
    std::string badLabel = text;
    badLabel.replace(badLabel.find("<s377m:OperationalPattern>06") + 26, 2, "ZZ");
    std::string unbound = text;
    const std::string declaration = "xmlns:s377m=\"urn:SMPTE:S377M\"";
    unbound.erase(unbound.find(declaration), declaration.size());
    std::filesystem::create_directory(m_dir.path() / "folder.xml");
    struct Case {
        std::string name;
        std::string input;
        std::string problem;
    };
    const std::vector<Case> cases = {
        {"missing", m_dir.file("missing.xml"), "cannot open"},
        {"directory", m_dir.file("folder.xml"), "is a directory"},
        {"unclosed", m_dir.write("unclosed.xml", Bytes(unclosed.begin(), unclosed.end())),
         "no element found: the document ends before the end tag of 's377m:MetadataSets'"},
        {"mismatched", m_dir.write("mismatched.xml", Bytes(mismatched.begin(), mismatched.end())),
         "line 29, column 5: mismatched tag: the end tag of 's377m:Preface' was expected"},
        {"unbound-prefix", m_dir.write("unbound.xml", Bytes(unbound.begin(), unbound.end())),
         "line 2, column 1: unbound prefix in the start tag of 's377m:MetadataSets'"},
        {"bad-label", m_dir.write("bad-label.xml", Bytes(badLabel.begin(), badLabel.end())),
         "bad-label.xml': 'ZZ.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00' is not a valid"},
        {"mxf", bitexactSample, "line 1, column 1"},
        {"empty", m_dir.write("empty.xml", {}), "line 1, column 1"},
        {"no-sets", m_dir.write("root.xml", {'<', 'r', 'o', 'o', 't', '/', '>'}),
         "holds no sets of header metadata"},
    };
    for (const Case& c : cases) {
        for (const bool asXml : {false, true}) {
            SCOPED_TRACE(c.name + (asXml ? " --xml" : ""));
            const auto run = VellumTest::expectFailureKeepsOutput(
                asXml ? std::vector<std::string>{"from-xml", "--xml", c.input, "-o", "OUT"}
                      : std::vector<std::string>{"from-xml", c.input, "-o", "OUT"},
                c.problem, m_dir);
            EXPECT_NE(run.err.find(std::filesystem::path(c.input).filename().string()),
                      std::string::npos)
                << "names the document: " << run.err;
        }
    }
}

} // namespace
