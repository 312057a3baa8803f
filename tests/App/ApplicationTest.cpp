#include "CliSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using VellumTest::runVellum;
using Arguments = std::vector<std::string>;

using Application = VellumTest::ProgramTest;

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

TEST_F(Application, BadCommandLinesExitWithStatusTwoAndTheUsage) {
    using VellumTest::expectUsageErrors;
    expectUsageErrors(
        "", {{{"frob"}, "unknown command 'frob'"}, {{"--frob"}, "unknown option '--frob'"}},
        "vellum COMMAND", m_dir);
    expectUsageErrors("help",
                      {{{"frob"}, "unknown command 'frob'"},
                       {{"klv", "version"}, "unexpected argument 'version'"}},
                      "vellum help [COMMAND]", m_dir);
    expectUsageErrors("version",
                      {{{"extra"}, "unexpected argument 'extra'"},
                       {{"--help=yes"}, "option '--help' takes no value"},
                       {{"-x"}, "unknown option '-x'"}},
                      "vellum version", m_dir);
}

} // namespace
