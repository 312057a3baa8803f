#include "CliSupport.h"
#include "ModelCheck.h"
#include "Support/Samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

using VellumTest::runVellum;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";

// The statements of a DOT graph as `vellum graph` writes them, one a line.
struct Dot {
    std::map<std::string, std::string> uidOf; // set node id -> instance UID from its tooltip
    std::map<std::string, std::string> labelOf;
    std::size_t darkNodes = 0;
    std::size_t danglingNodes = 0;
    struct Edge {
        std::string from;
        std::string to;
        std::string style;
    };
    std::vector<Edge> edges;
};

Dot parseDot(const std::string& text) {
    static const std::regex node(
        R"re(^\s+([a-z])(\d+) \[label="((?:[^"\\]|\\.)*)", tooltip="((?:[^"\\]|\\.)*)")re");
    static const std::regex edge(R"re(^\s+(\w+) -> (\w+) \[style=(\w+))re");
    static const std::regex uid(R"re(InstanceUID ([0-9A-F.]{47}|-)$)re");
    Dot dot;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        std::smatch match;
        if (std::regex_search(line, match, edge)) {
            dot.edges.push_back({match[1], match[2], match[3]});
        } else if (std::regex_search(line, match, node)) {
            const std::string kind = match[1];
            const std::string id = kind + match[2].str();
            const std::string tooltip = match[4];
            std::smatch found;
            if (kind == "s" && std::regex_search(tooltip, found, uid)) {
                dot.uidOf[id] = found[1];
                dot.labelOf[id] = match[3];
            }
            dot.darkNodes += kind == "d" ? 1 : 0;
            dot.danglingNodes += kind == "x" ? 1 : 0;
        }
    }
    return dot;
}

using GraphOnSample = VellumTest::ProgramOnSample;

TEST_P(GraphOnSample, AllSetsAreNodesAndReferencesAreEdgesOfTheirKind) {
    const auto model = VellumTest::readModel(GetParam());
    const auto run = runVellum({"graph", "--all-sets", GetParam()}, m_dir);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    ASSERT_EQ(run.out.rfind("digraph HeaderMetadata {\n", 0), 0U);
    const Dot dot = parseDot(run.out);

    std::vector<std::string> expectedUids;
    for (const auto* set : model->sets()) {
        expectedUids.push_back(VellumTest::uidText(*set));
    }
    std::vector<std::string> uids;
    for (const auto& [id, uid] : dot.uidOf) {
        uids.push_back(uid);
    }
    std::sort(expectedUids.begin(), expectedUids.end());
    std::sort(uids.begin(), uids.end());
    EXPECT_EQ(uids, expectedUids);
    EXPECT_EQ(dot.darkNodes, model->darkCount());

    // Strong references are solid edges and weak ones dashed, between the sets' nodes; a
    // reference to no set leads to a dangling node.
    std::vector<VellumTest::ModelReference> expected;
    std::size_t dangling = 0;
    for (const auto& reference : VellumTest::referencesOf(*model)) {
        const bool found =
            std::binary_search(expectedUids.begin(), expectedUids.end(), reference.to);
        if (found) {
            expected.push_back(reference);
        }
        dangling += found ? 0 : 1;
    }
    std::vector<VellumTest::ModelReference> drawn;
    std::size_t toDangling = 0;
    for (const auto& edge : dot.edges) {
        if (edge.style == "dotted") {
            ASSERT_EQ(dot.uidOf.count(edge.to), 1U) << "a source clip link leads to a set";
            continue;
        }
        ASSERT_TRUE(edge.style == "solid" || edge.style == "dashed") << edge.style;
        ASSERT_EQ(dot.uidOf.count(edge.from), 1U) << edge.from;
        if (edge.to[0] == 'x') {
            ++toDangling;
            continue;
        }
        ASSERT_EQ(dot.uidOf.count(edge.to), 1U) << edge.to;
        drawn.push_back({dot.uidOf.at(edge.from), dot.uidOf.at(edge.to), edge.style == "dashed"});
    }
    std::sort(expected.begin(), expected.end());
    std::sort(drawn.begin(), drawn.end());
    EXPECT_EQ(drawn, expected);
    EXPECT_EQ(toDangling, dangling);
    EXPECT_EQ(dot.danglingNodes > 0, dangling > 0);
}

TEST_P(GraphOnSample, TheDefaultViewIsWhatThePrefaceReachesAndGraphvizLaysItOut) {
    const auto model = VellumTest::readModel(GetParam());
    std::vector<const Vellum::Metadata::MetadataSet*> order;
    const unsigned notReached = model->calculateSerializationOrder(order, true, false);
    const auto run = runVellum({"graph", GetParam()}, m_dir);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const Dot dot = parseDot(run.out);
    // Long lists are cut short in this view, with a node standing for the rest.
    const bool cut = run.out.find(" more") != std::string::npos;
    if (!cut) {
        EXPECT_EQ(dot.uidOf.size(), order.size() - notReached);
    }
    EXPECT_LE(dot.uidOf.size(), order.size() - notReached);
    EXPECT_EQ(dot.darkNodes, 0U);
    ASSERT_FALSE(order.empty());
    // The first set drawn is the Preface (node s<its index among the sets>).
    const auto preface = std::find(model->sets().begin(), model->sets().end(), order.front());
    EXPECT_EQ(
        dot.labelOf.at("s" + std::to_string(preface - model->sets().begin())).rfind("Preface", 0),
        0U);

    if (!VellumTest::hasGraphviz()) {
        GTEST_SKIP() << "Graphviz's dot is not installed";
    }
    const auto svg = runVellum({"graph", "--format", "svg", GetParam()}, m_dir);
    ASSERT_EQ(svg.exitCode, 0) << svg.err;
    EXPECT_EQ(svg.out.rfind("<?xml", 0), 0U);
    EXPECT_NE(svg.out.find("<svg"), std::string::npos);
    EXPECT_EQ(svg.err, "");
}

INSTANTIATE_TEST_SUITE_P(Corpus, GraphOnSample, ::testing::ValuesIn(VellumTest::corpusPaths()),
                         VellumTest::sampleTestName);

using Graph = VellumTest::ProgramTest;

TEST_F(Graph, NodesShowTheValuesThatIdentifyASet) {
    const auto run = runVellum({"graph", bitexactSample}, m_dir);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    for (
        const char* text :
        {R"("Preface\nOP1a")",
         R"(Track (picture)\nTrackID 2\nTrackNumber 0x15010500\nEditRate 25/1)",
         R"(TimecodeComponent (timecode)\nDuration 5\nStart 00:00:00:00 @25)",
         R"(MPEG2VideoDescriptor\nCoding MPEG-2\nStored 352x288)",
         R"(AES3PCMDescriptor\nSampleRate 48000/1\nAudioSamplingRate 48000/1\nChannelCount 2\nQuantizationBits 16)",
         R"(SourcePackage …00.00.00.01\nSourceTrackID 2)", "style=dotted"}) {
        EXPECT_NE(run.out.find(text), std::string::npos) << text;
    }
}

TEST_F(Graph, QuotesAndBackslashesInValuesAreEscaped) {
    // The Identification's ProductName "OP1a Muxer" (UTF-16) becomes `a"b\c` + LF + `d<&é`.
    auto bytes = VellumTest::readFile(bitexactSample);
    VellumTest::replaceFirst(bytes, VellumTest::utf16(u"OP1a Muxer"),
                             VellumTest::utf16(u"a\"b\\c\nd<&\u00E9"));
    const std::string path = m_dir.write("escaped.mxf", bytes);
    const auto run = runVellum({"graph", path}, m_dir);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    // The value text escapes the quote, backslash and line end; DOT escapes its quotes and
    // backslashes again, and Graphviz draws the value text as it is.
    EXPECT_NE(run.out.find(R"(label="Identification\n\"a\\\"b\\\\c\\x0Ad<&é\"")"),
              std::string::npos)
        << run.out.substr(0, 2000);
    if (VellumTest::hasGraphviz()) {
        const auto svg = runVellum({"graph", "--format", "svg", path}, m_dir);
        ASSERT_EQ(svg.exitCode, 0) << svg.err;
        EXPECT_NE(svg.out.find(R"(>&quot;a\&quot;b\\c\x0Ad&lt;&amp;é&quot;<)"), std::string::npos);
    }
}

TEST_F(Graph, DropFrameTimecodesSkipTheFirstFrameNumbersOfAMinute) {
    struct Case {
        std::uint16_t start; // frames
        const char* text;
    };
    for (const Case& c : {Case{1799, "00:00:59;29"}, Case{1800, "00:01:00;02"},
                          Case{17982, "00:10:00;00"}, Case{17983, "00:10:00;01"}}) {
        // The first TimecodeComponent: StartTimecode (tag 15.01), RoundedTimecodeBase 25 -> 30
        // (15.02), DropFrame 0 -> 1 (15.03).
        auto bytes = VellumTest::readFile(bitexactSample);
        VellumTest::replaceFirst(bytes, {0x15, 0x01, 0x00, 0x08, 0, 0, 0, 0, 0, 0, 0, 0},
                                 {0x15, 0x01, 0x00, 0x08, 0, 0, 0, 0, 0, 0,
                                  static_cast<std::uint8_t>(c.start >> 8U),
                                  static_cast<std::uint8_t>(c.start & 0xFFU)});
        VellumTest::replaceFirst(bytes, {0x15, 0x02, 0x00, 0x02, 0x00, 0x19},
                                 {0x15, 0x02, 0x00, 0x02, 0x00, 0x1E});
        VellumTest::replaceFirst(bytes, {0x15, 0x03, 0x00, 0x01, 0x00},
                                 {0x15, 0x03, 0x00, 0x01, 0x01});
        const auto run = runVellum({"graph", m_dir.write("drop.mxf", bytes)}, m_dir);
        ASSERT_EQ(run.exitCode, 0) << run.err;
        EXPECT_NE(run.out.find(std::string("Start ") + c.text + " @30"), std::string::npos)
            << c.text;
    }
}

} // namespace
