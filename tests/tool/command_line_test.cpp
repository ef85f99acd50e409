// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

namespace {

using CommandLine = Tool_test;

const char* const HELP = R"(Lists and runs offline shader compilers.
Usage: vexacm [OPTIONS] SUBCOMMAND

Options:
  -h,--help                   Print this help message and exit
  --version                   Display program version information and exit
  --plugins DIR               Plug-in directory, instead of the tool's own

Subcommands:
  list                        List the compilers that pass the filters
  info                        Tell all about one compiler
  compile                     Compile with the first compiler that passes
  batch                       Compile many sources with all compilers that pass
  merge                       Join what the shards of a batch printed
  cache                       Look at, trim or clear a cache

Exit status: 0 done, 1 errors in the source, 2 wrong use, 3 no compiler matches,
4 request refused, 5 input or output failed. See vexacm(1).
)";

const char* const INFO_HELP = R"(Tell all about one compiler
Usage: vexacm info [OPTIONS] ID

Positionals:
  ID NUMBER REQUIRED          Number of the compiler, as listed

Options:
  -h,--help                   Print this help message and exit
  --json                      Print an object

)";

TEST_F(CommandLine, HelpThenOnStandardOutput) {
    expect(run_here({VEXACM_TOOL, "--help"}), 0, HELP, "");
    expect(run_here({VEXACM_TOOL, "-h"}), 0, HELP, "");
    expect(run_here({VEXACM_TOOL, "info", "--help"}), 0, INFO_HELP, "");
}

TEST_F(CommandLine, HelpThenEveryOptionIsInIt) {
    const std::string filters[] = {"--driver", "--core",          "--revision",
                                   "--api",    "--binary-output", "--min-version NUMBER"};
    const std::string compile[] = {"--stage", "-D NAME[=VALUE]", "--kernel NAME", "--prerotate",
                                   "-o OUT",  "--json",          "--all"};
    const std::string list_help = run_here({VEXACM_TOOL, "list", "--help"}).out;
    const std::string compile_help = run_here({VEXACM_TOOL, "compile", "--help"}).out;
    for (const std::string& option : filters) {
        EXPECT_NE(list_help.find("\n  " + option), std::string::npos) << option;
        EXPECT_EQ(compile_help.find(option), std::string::npos) << option;
    }
    EXPECT_NE(compile_help.find("filters as of list"), std::string::npos);
    for (const std::string& option : compile)
        EXPECT_NE(compile_help.find("\n  " + option), std::string::npos) << option;
    EXPECT_NE(list_help.find("\n  --json"), std::string::npos);
}

TEST_F(CommandLine, VersionThenThatOfTheLibrary) {
    expect(run_here({VEXACM_TOOL, "--version"}), 0, "vexacm 4.0.2\n", "");
    expect(run_here({VEXACM_TOOL, "list", "--version"}), 0, "vexacm 4.0.2\n", "");
}

TEST_F(CommandLine, NoCommandThenWrongUse) {
    expect(run_here({VEXACM_TOOL}), 2, "", usage_error("A subcommand is required"));
}

TEST_F(CommandLine, UnknownCommandThenWrongUse) {
    expect(vexacm({"remove"}), 2, "", usage_error("not expected: remove"));
}

TEST_F(CommandLine, UnknownOptionThenWrongUse) {
    expect(vexacm({"list", "--colour"}), 2, "", usage_error("not expected: --colour"));
    expect(vexacm({"--json", "list"}), 2, "", usage_error("not expected: --json"));
}

TEST_F(CommandLine, OptionWithoutItsValueThenWrongUse) {
    expect(vexacm({"list", "--core"}), 2, "", usage_error("--core: 1 required TEXT missing"));
}

TEST_F(CommandLine, OptionTwiceThenWrongUse) {
    expect(vexacm({"list", "--core", "a", "--core", "b"}), 2, "",
           usage_error("--core: At Most 1 required but received 2"));
}

TEST_F(CommandLine, AbbreviatedOptionThenWrongUse) {
    expect(vexacm({"list", "--rev", "r0p0"}), 2, "", usage_error("not expected: --rev r0p0"));
}

} // namespace
