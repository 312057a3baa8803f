#include "CliSupport.h"
#include "Support/Samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using VellumTest::runVellum;
using Arguments = std::vector<std::string>;

using Application = VellumTest::ProgramTest;

const std::string bitexactSample = VellumTest::sampleDir() + "/ffmpeg-op1a-mpeg2-pcm-bitexact.mxf";

TEST_F(Application, EveryWayOfAskingForTheUsageListsTheCommands) {
    for (const Arguments& arguments :
         {Arguments{}, Arguments{"--help"}, Arguments{"-h"}, Arguments{"help"}}) {
        SCOPED_TRACE(arguments.empty() ? "(no arguments)" : arguments.front());
        const auto run = runVellum(arguments, m_dir);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.err, "");
        EXPECT_NE(run.out.find("usage: vellum COMMAND"), std::string::npos) << run.out;
        for (const char* command :
             {"\n  help ", "\n  version ", "\n  klv ", "\n  info ", "\n  sets ", "\n  header ",
              "\n  to-xml ", "\n  from-xml ", "\n  graph "}) {
            EXPECT_NE(run.out.find(command), std::string::npos) << command;
        }
    }
}

TEST_F(Application, EachCommandHasItsOwnHelp) {
    struct Case {
        Arguments arguments;
        std::string synopsis;
        std::vector<const char*> options; // described below the synopsis
    };
    const std::string klv = "usage: vellum klv [--limit N] FILE\n";
    const std::vector<const char*> partition = {"--partition P", "--dictionary FILE"};
    const std::vector<const char*> xml = {"-o, --output OUT", "--typed-references",
                                          "--structural-only", "--encoding E", "--compact"};
    const std::vector<Case> cases = {
        {{"klv", "--help"}, klv, {"--limit N"}},
        {{"klv", "-h"}, klv, {}},
        {{"klv", "some.mxf", "--help"}, klv, {}},
        {{"help", "klv"}, klv, {}},
        {{"version", "--help"}, "usage: vellum version\n", {}},
        {{"help", "help"}, "usage: vellum help [COMMAND]\n", {}},
        {{"info", "--help"},
         "usage: vellum info [--partition P] [--dictionary FILE]... [--json] FILE\n",
         partition},
        {{"help", "sets"},
         "usage: vellum sets [--partition P] [--dictionary FILE]... [--json] FILE\n",
         partition},
        {{"help", "graph"},
         "usage: vellum graph [--partition P] [--dictionary FILE]... [--all-sets] "
         "[--format dot|svg] [-o OUT] FILE\n",
         {}},
        {{"header", "-h"},
         "usage: vellum header [--partition P] [--dictionary FILE]... "
         "[--verbose] -o OUT FILE\n",
         {"--partition P", "--dictionary FILE", "-o, --output OUT"}},
        {{"to-xml", "--help"}, "usage: vellum to-xml ", xml},
        {{"from-xml", "--help"}, "usage: vellum from-xml ", xml},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.arguments.front() + " " + c.arguments.back());
        const auto run = runVellum(c.arguments, m_dir);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.out.rfind(c.synopsis, 0), 0U) << run.out;
        for (const char* option : c.options) {
            EXPECT_NE(run.out.find(option), std::string::npos) << option;
        }
        EXPECT_NE(run.out.find("-h, --help"), std::string::npos);
    }
    EXPECT_NE(runVellum({"to-xml", "--help"}, m_dir).out.find("--partition P"), std::string::npos);
    EXPECT_NE(runVellum({"from-xml", "--help"}, m_dir).out.find("--xml "), std::string::npos);
}

TEST_F(Application, VersionNamesTheProjectVersion) {
    const auto run = runVellum({"version"}, m_dir);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out.rfind("vellum " VELLUM_EXPECTED_VERSION "\n", 0), 0U) << run.out;
    EXPECT_NE(run.out.find("Vellum::Core library " VELLUM_EXPECTED_VERSION), std::string::npos)
        << run.out;
}

// Every command that writes a file writes there what it writes to standard output for "-"
// (and, where the option may be left out, without it), replacing what was there.
TEST_F(Application, OutputFilesHoldWhatStandardOutputGets) {
    const std::string doc = m_dir.file("doc.xml");
    ASSERT_EQ(runVellum({"to-xml", bitexactSample, "-o", doc}, m_dir).exitCode, 0);
    const struct {
        Arguments arguments; // "OUT" stands for the output
        bool optional;       // whether the output option may be left out
    } cases[] = {
        {{"to-xml", "--typed-references", "-o", "OUT", bitexactSample}, true},
        {{"to-xml", bitexactSample, "--output", "OUT"}, true},
        {{"graph", "-o", "OUT", bitexactSample}, true},
        {{"from-xml", "--xml", "-o", "OUT", doc}, true},
        {{"from-xml", doc, "--output", "OUT"}, false},
        {{"header", bitexactSample, "-o", "OUT"}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments[0] + " " + c.arguments[1]);
        const std::string output = m_dir.write("out", {'o', 'l', 'd'});
        Arguments toFile = c.arguments;
        Arguments toDash = c.arguments;
        std::replace(toFile.begin(), toFile.end(), std::string("OUT"), output);
        std::replace(toDash.begin(), toDash.end(), std::string("OUT"), std::string("-"));
        const auto written = runVellum(toFile, m_dir);
        ASSERT_EQ(written.exitCode, 0) << written.err;
        EXPECT_EQ(written.out + written.err, "");
        const auto dash = runVellum(toDash, m_dir);
        ASSERT_EQ(dash.exitCode, 0) << dash.err;
        EXPECT_EQ(dash.err, "");
        const auto bytes = VellumTest::readFile(output);
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), dash.out);
        if (c.optional) {
            const auto at = std::find(toDash.begin(), toDash.end(), "-");
            toDash.erase(at - 1, at + 1);
            EXPECT_EQ(runVellum(toDash, m_dir).out, dash.out);
        }
    }
}

// Failures of every command: status 1 for input or output that cannot be used, 2 for a bad
// command line (and for any trouble of diff, whose 1 means "different"), nothing on standard
// output and one error line naming the problem; the files named are left as they were.
TEST_F(Application, FailuresExitWithTheirStatusAndOneErrorLine) {
    using Bytes = std::vector<std::uint8_t>;
    const Bytes sample = VellumTest::readFile(bitexactSample);
    Bytes longRunIn = sample;
    longRunIn.insert(longRunIn.begin(), 65536, 'R');
    const std::string gstreamer = VellumTest::sampleDir() + "/gst-mxfmux-h264.mxf";
    const std::string copy = m_dir.write("copy.mxf", VellumTest::readFile(gstreamer));
    const std::string doc = m_dir.file("doc.xml");
    const std::string klv = m_dir.file("header.klv");
    ASSERT_EQ(runVellum({"to-xml", gstreamer, "-o", doc}, m_dir).exitCode, 0);
    ASSERT_EQ(runVellum({"header", bitexactSample, "-o", klv}, m_dir).exitCode, 0);
    const std::string empty = m_dir.write("empty.mxf", {});
    const std::string text = m_dir.write("text.txt", {'h', 'e', 'l', 'l', 'o'});
    const std::string shortFile = m_dir.write("short.mxf", {0x06, 0x0E, 0x2B});
    const std::string runIn = m_dir.write("long-runin.mxf", longRunIn);
    const std::string rootOnly = m_dir.write("root.xml", {'<', 'a', '/', '>'});
    const std::string missing = m_dir.file("missing.mxf");
    const std::string folder = m_dir.path().string();
    const std::string x = m_dir.file("x.mxf");
    const std::string tmpdir = "TMPDIR=" + folder;
    const struct {
        Arguments arguments;
        int status;
        std::string problem;
        std::string environment = "";
        std::string input = ""; // fed through a pipe as standard input
    } cases[] = {
        {{"klv", empty}, 1, "'" + empty + "' is empty"},
        {{"klv", text}, 1, "'" + text + "' is not an MXF file"},
        {{"klv", shortFile}, 1, "'" + shortFile + "' is not an MXF file"},
        {{"klv", runIn}, 1, "no partition pack key starts within its first 65536 bytes"},
        {{"klv", missing}, 1, "cannot open '" + missing + "'"},
        {{"klv", folder}, 1, "'" + folder + "' is a directory"},
        {{"to-xml", bitexactSample, "-o", folder}, 1, "output '" + folder + "' is a directory"},
        {{"to-xml", bitexactSample, "-o", m_dir.file("no-such-folder/out.xml")},
         1,
         "cannot create"},
        {{"from-xml", "--dictionary", m_dir.file("none.dict"), doc, "-o", "-"},
         1,
         "dictionary: cannot open '" + m_dir.file("none.dict") + "'"},
        {{"graph", "--format", "png", bitexactSample}, 2, "takes dot or svg, not 'png'"},
        {{"graph"}, 2, "missing FILE"},
        {{"graph", "-o", "", bitexactSample}, 2, "needs a file name"},
        {{"graph", missing}, 1, "cannot open '" + missing + "'"},
        {{"graph", "--format", "svg", bitexactSample},
         1,
         "cannot run the Graphviz program 'dot'",
         "PATH=/nonexistent"},
        {{"diff", bitexactSample, missing}, 2, "missing.mxf"},
        {{"diff", folder, bitexactSample}, 2, "is a directory"},
        {{"diff", bitexactSample, text}, 2, "text.txt"},
        {{"diff", rootOnly, bitexactSample}, 2, "holds no sets"},
        {{"diff", "--partition", "footer", bitexactSample, klv}, 2, "footer"},
        {{"diff", "--dictionary", m_dir.file("none.txt"), bitexactSample, klv}, 2, "dictionary"},
        {{"diff", bitexactSample}, 2, "missing A and B"},
        {{"diff", bitexactSample, klv, klv}, 2, "unexpected argument"},
        {{"diff", "--frob", bitexactSample, klv}, 2, "unknown option '--frob'"},
        {{"diff", "--json", bitexactSample, missing}, 2, "missing.mxf"},
        {{"diff", "--json", "--quiet", bitexactSample, bitexactSample}, 2, "exclude each other"},
        {{"apply", copy, doc}, 2, "give either -o OUT or --in-place"},
        {{"apply", "--in-place", "-o", x, copy, doc}, 2, "either"},
        {{"apply", "--in-place", "--reserve", "10", copy, doc}, 2, "'--reserve' needs -o"},
        {{"apply", "-o", x, "--reserve", "ten", copy, doc}, 2, "number"},
        {{"apply", "--in-place", copy, m_dir.file("missing.xml")}, 1, "missing.xml"},
        {{"apply", "--in-place", copy, text}, 1, "text.txt"},
        {{"apply", "-o", x, doc, doc}, 1, "MXF"},
        // Copies of standard input go to TMPDIR, here to see that none is left.
        {{"klv", "-"}, 1, "standard input", tmpdir, empty},
        {{"info", "-"}, 1, "standard input", tmpdir, empty},
        {{"to-xml", "-"}, 1, "standard input", tmpdir, rootOnly},
        {{"from-xml", "-", "-o", "-"}, 1, "standard input", tmpdir, empty},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.empty() ? "" : c.arguments.front() + ": " + c.problem);
        const auto run = runVellum(c.arguments, m_dir, {c.environment, c.input, true});
        EXPECT_TRUE(VellumTest::failedWith(run, c.status, c.problem));
    }
    EXPECT_EQ(VellumTest::readFile(copy), VellumTest::readFile(gstreamer));
    EXPECT_FALSE(std::filesystem::exists(x));
    EXPECT_TRUE(std::filesystem::is_directory(folder));
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        EXPECT_NE(entry.path().filename().string().rfind("vellum-stdin-", 0), 0U);
    }
}

TEST_F(Application, BadCommandLinesExitWithStatusTwoAndTheUsage) {
    const std::string doc = m_dir.file("doc.xml"); // never read: the command line is refused
    const struct {
        std::string command;
        std::vector<VellumTest::UsageCase> cases;
        std::string synopsis;
    } commands[] = {
        {"",
         {{{"frob"}, "unknown command 'frob'"}, {{"--frob"}, "unknown option '--frob'"}},
         "vellum COMMAND"},
        {"help",
         {{{"frob"}, "unknown command 'frob'"},
          {{"klv", "version"}, "unexpected argument 'version'"}},
         "vellum help [COMMAND]"},
        {"version",
         {{{"extra"}, "unexpected argument 'extra'"},
          {{"--help=yes"}, "option '--help' takes no value"},
          {{"-x"}, "unknown option '-x'"}},
         "vellum version"},
        {"klv",
         {{{}, "missing FILE"},
          {{"a.mxf", "b.mxf"}, "unexpected argument 'b.mxf'"},
          {{bitexactSample, "--limit"}, "option '--limit' needs a value"},
          {{"--limit", "0", bitexactSample}, "needs a whole number from 1 up, not '0'"},
          {{"--limit", "-3", bitexactSample}, "not '-3'"},
          {{"--limit=", bitexactSample}, "not ''"},
          {{"--limit=1x", bitexactSample}, "not '1x'"},
          {{"--limit", "18446744073709551616", bitexactSample}, "not '18446744073709551616'"},
          {{"--limit", "1", "--limit", "2", bitexactSample}, "given more than once"},
          {{"--frob", bitexactSample}, "unknown option '--frob'"}},
         "vellum klv [--limit N] FILE)"},
        {"header",
         {{{bitexactSample}, "missing -o OUT"},
          {{}, "missing FILE"},
          {{"-o", "x.klv"}, "missing FILE"},
          {{bitexactSample, "-o"}, "option '--output' needs a value"},
          {{bitexactSample, "-o", ""}, "needs a file name"},
          {{bitexactSample, "-o", "a", "--output", "b"}, "given more than once"},
          {{bitexactSample, "other.mxf", "-o", "a"}, "unexpected argument 'other.mxf'"}},
         "vellum header"},
        {"to-xml",
         {{{}, "missing FILE"},
          {{bitexactSample, "other.mxf"}, "unexpected argument 'other.mxf'"},
          {{"--encoding", "latin-1", bitexactSample}, "needs utf-8 or utf-16, not 'latin-1'"},
          {{"--encoding", "UTF-8", bitexactSample}, "not 'UTF-8'"},
          {{"--encoding", bitexactSample}, "missing FILE"},
          {{"-o", "", bitexactSample}, "needs a file name"},
          {{"--compact=yes", bitexactSample}, "takes no value"},
          {{"--compact", "--compact", bitexactSample}, "given more than once"},
          {{"--xml", bitexactSample}, "unknown option '--xml'"}},
         "vellum to-xml"},
        {"from-xml",
         {{{doc}, "missing -o OUT"},
          {{}, "missing DOC"},
          {{"-o", "x.klv"}, "missing DOC"},
          {{doc, "other.xml", "-o", "x.klv"}, "unexpected argument 'other.xml'"},
          {{doc, "-o", ""}, "needs a file name"},
          {{doc, "-o", "x.klv", "--compact"}, "option '--compact' needs --xml"},
          {{doc, "-o", "x.klv", "--typed-references"}, "'--typed-references' needs --xml"},
          {{doc, "-o", "x.klv", "--structural-only"}, "'--structural-only' needs --xml"},
          {{doc, "-o", "x.klv", "--encoding", "utf-8"}, "'--encoding' needs --xml"},
          {{doc, "--xml", "--encoding", "utf-32"}, "needs utf-8 or utf-16, not 'utf-32'"},
          {{doc, "--partition", "footer", "-o", "x.klv"}, "unknown option '--partition'"}},
         "vellum from-xml"},
    };
    for (const auto& c : commands) {
        for (const VellumTest::UsageCase& usage : c.cases) {
            Arguments arguments = usage.arguments;
            if (!c.command.empty()) {
                arguments.insert(arguments.begin(), c.command);
            }
            const auto run = runVellum(arguments, m_dir);
            EXPECT_TRUE(VellumTest::failedWith(run, 2, usage.problem)) << c.command;
            EXPECT_NE(run.err.find("(usage: " + c.synopsis), std::string::npos) << run.err;
        }
    }
}

} // namespace
