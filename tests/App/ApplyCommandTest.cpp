#include "CliSupport.h"
#include "Support/Samples.h"

#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/MXF/HeaderMetadataRegions.h"
#include "Vellum/MXF/HeaderMetadataUpdate.h"
#include "Vellum/MXF/MXFFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using VellumTest::runVellum;

// The exported document with its first ProductName set to `name` and its first TrackID
// raised by 100.
std::string edited(const std::string& xml, const std::string& name) {
    std::string out =
        std::regex_replace(xml, std::regex("(<s377m:ProductName[^>]*>)[^<]*(</s377m:ProductName>)"),
                           "$1" + name + "$2", std::regex_constants::format_first_only);
    std::smatch track;
    if (std::regex_search(out, track, std::regex("<s377m:TrackID>([0-9]+)</s377m:TrackID>"))) {
        const std::string raised = "<s377m:TrackID>" +
                                   std::to_string(std::stoul(track[1].str()) + 100) +
                                   "</s377m:TrackID>";
        out.replace(static_cast<std::size_t>(track.position(0)),
                    static_cast<std::size_t>(track.length(0)), raised);
    }
    return out;
}

// Whether every byte where `a` and `b` differ lies in a header metadata region of `path`.
bool differsOnlyInHeaderMetadata(const std::string& path, const Bytes& a, const Bytes& b) {
    Vellum::DataIO::File::FileDataSource source(path);
    const Vellum::MXF::MXFFile file(source);
    const Vellum::MXF::HeaderMetadataRegions regions(source, file);
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] == b[i]) {
            continue;
        }
        const bool inside =
            std::any_of(regions.regions().begin(), regions.regions().end(),
                        [i](const auto& r) { return i >= r.offset && i < r.end(); });
        if (!inside) {
            return false;
        }
    }
    return a.size() == b.size();
}

using ApplyOnSample = VellumTest::ProgramOnSample;

TEST_P(ApplyOnSample, WritesExactlyTheEditIntoACopyAndInPlace) {
    const std::string sample = VellumTest::sampleDir() + "/" + GetParam();
    const auto exported = runVellum({"to-xml", sample}, m_dir);
    ASSERT_EQ(exported.exitCode, 0) << exported.err;
    const std::string doc = m_dir.write("doc.xml", [&] {
        const std::string text = edited(exported.out, "Edited by Vellum");
        return Bytes(text.begin(), text.end());
    }());
    const Bytes original = VellumTest::readFile(sample);

    const std::string copy = m_dir.file("copy.mxf");
    const auto applied = runVellum({"apply", "-o", copy, sample, doc}, m_dir);
    ASSERT_EQ(applied.exitCode, 0) << applied.err;
    const auto copyDiff = runVellum({"diff", sample, copy}, m_dir);
    EXPECT_EQ(copyDiff.exitCode, 1);
    EXPECT_NE(copyDiff.out.find("ProductName: "), std::string::npos) << copyDiff.out;
    EXPECT_NE(copyDiff.out.find("TrackID: "), std::string::npos) << copyDiff.out;
    EXPECT_EQ(std::count(copyDiff.out.begin(), copyDiff.out.end(), '\n'), 2) << copyDiff.out;
    EXPECT_NO_THROW(Vellum::MXF::HeaderMetadataUpdate::compareOutsideRegions(sample, copy));

    const std::string inPlace = m_dir.write("in-place.mxf", original);
    const auto updated = runVellum({"apply", "--in-place", inPlace, doc}, m_dir);
    ASSERT_EQ(updated.exitCode, 0) << updated.err;
    EXPECT_EQ(runVellum({"diff", sample, inPlace}, m_dir).out, copyDiff.out);
    EXPECT_TRUE(differsOnlyInHeaderMetadata(sample, original, VellumTest::readFile(inPlace)));
}

INSTANTIATE_TEST_SUITE_P(Samples, ApplyOnSample, ::testing::ValuesIn(VellumTest::sampleNames()),
                         VellumTest::sampleTestName);

class Apply : public ::testing::Test {
protected:
    VellumTest::TempDir m_dir;
    const std::string m_sample = VellumTest::sampleDir() + "/gst-mxfmux-h264.mxf";
};

TEST_F(Apply, AGrowthPastTheSpaceIsRefusedInPlaceAndRewritesACopy) {
    const std::string xml = runVellum({"to-xml", m_sample}, m_dir).out;
    const std::string doc = m_dir.write("grown.xml", [&] {
        const std::string text = edited(xml, std::string(30000, 'y'));
        return Bytes(text.begin(), text.end());
    }());
    const Bytes original = VellumTest::readFile(m_sample);
    const std::string inPlace = m_dir.write("in-place.mxf", original);
    const auto before = std::filesystem::last_write_time(inPlace);
    const auto refused = runVellum({"apply", "--in-place", inPlace, doc}, m_dir);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.err.find("does not fit in place"), std::string::npos) << refused.err;
    EXPECT_EQ(VellumTest::readFile(inPlace), original);
    EXPECT_EQ(std::filesystem::last_write_time(inPlace), before);

    const std::string copy = m_dir.file("copy.mxf");
    const auto rewritten =
        runVellum({"apply", "--reserve", "4096", "-o", copy, m_sample, doc}, m_dir);
    ASSERT_EQ(rewritten.exitCode, 0) << rewritten.err;
    Vellum::DataIO::File::FileDataSource source(copy);
    const Vellum::MXF::MXFFile file(source);
    EXPECT_TRUE(file.problems().empty());
    EXPECT_EQ(file.discovery(), "random index pack");
    EXPECT_NO_THROW(Vellum::MXF::HeaderMetadataUpdate::compareOutsideRegions(m_sample, copy));
    EXPECT_EQ(runVellum({"diff", "--quiet", copy, doc}, m_dir).exitCode, 0);
}

} // namespace
