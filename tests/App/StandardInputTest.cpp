#include "CliSupport.h"
#include "Support/PrintCase.h"
#include "Support/Samples.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using VellumTest::runVellum;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";

// `text` with every occurrence of `from` replaced by `to`.
std::string replaceAll(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

struct Case {
    std::vector<std::string> arguments; ///< "FILE" stands for the input
    bool throughPipe;
    bool document = false; ///< the input is the sample's to-xml document, not the sample
};
VELLUM_PRINT_CASE(Case, c.arguments.front() << (c.throughPipe ? " through a pipe" : ""))

class FromStandardInput : public ::testing::TestWithParam<Case> {
protected:
    VellumTest::TempDir m_dir;
};

// Reading "-" gives what reading the file gives, with "standard input" for its name.
TEST_P(FromStandardInput, GivesTheOutputOfTheFile) {
    std::string input = bitexactSample;
    if (GetParam().document) {
        input = m_dir.file("doc.xml");
        ASSERT_EQ(runVellum({"to-xml", bitexactSample, "-o", input}, m_dir).exitCode, 0);
    }
    std::vector<std::string> fromFile = GetParam().arguments;
    std::vector<std::string> fromStdin = fromFile;
    for (std::size_t i = 0; i < fromFile.size(); ++i) {
        if (fromFile[i] == "FILE") {
            fromFile[i] = input;
            fromStdin[i] = "-";
        }
    }
    const auto expected = runVellum(fromFile, m_dir);
    ASSERT_EQ(expected.exitCode, 0) << expected.err;
    // TMPDIR puts the copy of a pipe in the test's folder, to see that it is removed.
    const auto run = runVellum(fromStdin, m_dir,
                               {"TMPDIR=" + m_dir.path().string(), input, GetParam().throughPipe});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, replaceAll(expected.out, input, "standard input"));
    for (const auto& entry : std::filesystem::directory_iterator(m_dir.path())) {
        EXPECT_NE(entry.path().filename().string().rfind("vellum-stdin-", 0), 0U);
    }
}

const std::vector<Case> commandCases{
    {{"klv", "FILE"}, false},
    {{"klv", "FILE"}, true},
    {{"info", "FILE"}, true},
    {{"sets", "--json", "FILE"}, true},
    {{"header", "FILE", "-o", "-"}, true},
    {{"to-xml", "FILE"}, false},
    {{"to-xml", "FILE"}, true},
    {{"graph", "FILE"}, true},
    {{"from-xml", "FILE", "-o", "-"}, false, true},
    {{"from-xml", "FILE", "-o", "-"}, true, true},
};

INSTANTIATE_TEST_SUITE_P(Commands, FromStandardInput, ::testing::ValuesIn(commandCases),
                         [](const auto& p) {
                             return VellumTest::testName(p.param.arguments.front() + ".") +
                                    std::to_string(p.index) +
                                    (p.param.throughPipe ? "Pipe" : "Redirect");
                         });

} // namespace
