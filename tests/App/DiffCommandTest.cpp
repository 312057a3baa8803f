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

class Diff : public ::testing::Test {
protected:
    void SetUp() override {
        const auto run = runVellum({"header", bitexactSample, "-o", m_klv}, m_dir);
        ASSERT_EQ(run.exitCode, 0) << run.err;
    }

    VellumTest::TempDir m_dir;
    const std::string m_klv = m_dir.file("header.klv");
};

TEST_F(Diff, AFileAndItsOwnHeaderMetadataAreEqual) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"diff", bitexactSample, m_klv},
             {"diff", m_klv, bitexactSample},
             {"diff", "--partition", "0", "-q", bitexactSample, bitexactSample}}) {
        const auto run = runVellum(arguments, m_dir);
        EXPECT_EQ(run.exitCode, 0) << run.out << run.err;
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "");
    }
}

TEST_F(Diff, AChangedStringIsOneLineAndStatusOne) {
    Bytes bytes = VellumTest::readFile(m_klv);
    VellumTest::replaceFirst(bytes, VellumTest::utf16(u"FFmpeg"), VellumTest::utf16(u"FFmpeG"));
    const std::string changed = m_dir.write("changed.klv", bytes);

    const auto run = runVellum({"diff", bitexactSample, changed}, m_dir);
    EXPECT_EQ(run.exitCode, 1) << run.err;
    // The sample's Identification has the instance UID AD.AB.44.24.2F.25.4D.C7.92.FF.00.0C....
    EXPECT_EQ(run.out, "item changed: Identification "
                       "AD.AB.44.24.2F.25.4D.C7.92.FF.00.0C.00.00.00.00 CompanyName: \"FFmpeg\" "
                       "-> \"FFmpeG\"\n");
    EXPECT_EQ(run.err, "");

    const auto quiet = runVellum({"diff", "--quiet", bitexactSample, changed}, m_dir);
    EXPECT_EQ(quiet.exitCode, 1);
    EXPECT_EQ(quiet.out, "");
    EXPECT_EQ(quiet.err, "");
}

TEST_F(Diff, XmlDocumentsAreToldByTheirFirstBytes) {
    const std::string xml = m_dir.file("doc.xml");
    ASSERT_EQ(runVellum({"to-xml", "-o", xml, bitexactSample}, m_dir).exitCode, 0);
    const Bytes document = VellumTest::readFile(xml);
    Bytes withBom = {0xEF, 0xBB, 0xBF};
    withBom.insert(withBom.end(), document.begin(), document.end());
    // Blanks may come before the root element, though not before an XML declaration.
    Bytes indented = {' ', '\n', '\t'};
    const auto declarationEnd = std::find(document.begin(), document.end(), '>');
    ASSERT_NE(declarationEnd, document.end());
    indented.insert(indented.end(), declarationEnd + 1, document.end());

    const auto run = runVellum(
        {"diff", m_dir.write("bom.xml", withBom), m_dir.write("indented.xml", indented)}, m_dir);
    EXPECT_EQ(run.exitCode, 0) << run.out << run.err;
    EXPECT_EQ(run.out, "");
}

} // namespace
