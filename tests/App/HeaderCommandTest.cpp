#include "CliSupport.h"
#include "Support/Samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using VellumTest::runVellum;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";

using HeaderOnSample = VellumTest::ProgramOnSample;

TEST_P(HeaderOnSample, WritesExactlyTheHeaderMetadataOfTheFile) {
    const std::string path = VellumTest::sampleDir() + "/" + GetParam();
    const Bytes file = VellumTest::readFile(path);
    const auto region = VellumTest::findHeaderRegion(file, 0);
    const auto first = file.begin() + static_cast<std::ptrdiff_t>(region.offset);
    const std::string output = m_dir.file("out.klv");
    const auto run = runVellum({"header", path, "-o", output}, m_dir);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(VellumTest::readFile(output),
              Bytes(first, first + static_cast<std::ptrdiff_t>(region.size)));
}

INSTANTIATE_TEST_SUITE_P(Samples, HeaderOnSample, ::testing::ValuesIn(VellumTest::sampleNames()),
                         VellumTest::sampleTestName);

using Header = VellumTest::ProgramTest;

// GStreamer repeats the header metadata in its footer partition (the third); with the copy's
// first "GStreamer" changed, header and to-xml give the chosen copy.
TEST_F(Header, HeaderAndToXmlReadTheChosenPartition) {
    Bytes file = VellumTest::readFile(VellumTest::sampleDir() + "/gst-mxfmux-h264.mxf");
    const auto walk = VellumTest::walkKlv(file, 0);
    std::uint64_t footer = 0;
    for (const auto& triplet : walk.triplets) {
        if (triplet.key.compare(0, 41, "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.04") == 0) {
            footer = triplet.offset;
        }
    }
    ASSERT_NE(footer, 0U);
    const auto region = VellumTest::findHeaderRegion(file, footer);
    const auto at = file.begin() + static_cast<std::ptrdiff_t>(region.offset);
    Bytes copy(at, at + static_cast<std::ptrdiff_t>(region.size));
    VellumTest::replaceFirst(copy, VellumTest::utf16(u"GStreamer"),
                             VellumTest::utf16(u"GStreamor"));
    std::copy(copy.begin(), copy.end(), at);
    const std::string path = m_dir.write("footer-changed.mxf", file);
    for (const char* which : {"footer", "2"}) {
        SCOPED_TRACE(which);
        const auto run = runVellum({"header", "--partition", which, "-o", "-", path}, m_dir);
        ASSERT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(Bytes(run.out.begin(), run.out.end()), copy);
        const auto xml = runVellum({"to-xml", "--partition", which, path}, m_dir);
        ASSERT_EQ(xml.exitCode, 0) << xml.err;
        EXPECT_NE(xml.out.find(">GStreamor"), std::string::npos);
    }
    EXPECT_EQ(runVellum({"to-xml", path}, m_dir).out.find("GStreamor"), std::string::npos);
    EXPECT_TRUE(VellumTest::failedWith(runVellum({"to-xml", "--partition", "1", path}, m_dir), 1,
                                       "carries no header metadata"));
}

TEST_F(Header, VerboseSummarisesOnStdoutOrOnStderrForStandardOutput) {
    const std::string output = m_dir.file("out.klv");
    const auto toFile = runVellum({"header", "--verbose", bitexactSample, "-o", output}, m_dir);
    ASSERT_EQ(toFile.exitCode, 0) << toFile.err;
    EXPECT_EQ(toFile.out.rfind("wrote 5632 bytes of header metadata (5632 in the file)", 0), 0U)
        << toFile.out;
    EXPECT_EQ(std::count(toFile.out.begin(), toFile.out.end(), '\n'), 1);
    EXPECT_NE(toFile.out.find(output), std::string::npos);

    const auto toStdout = runVellum({"header", "--verbose", bitexactSample, "-o", "-"}, m_dir);
    ASSERT_EQ(toStdout.exitCode, 0) << toStdout.err;
    EXPECT_EQ(toStdout.out.size(), 5632U);
    EXPECT_EQ(toStdout.err.rfind("wrote 5632 bytes", 0), 0U) << toStdout.err;
}

} // namespace
