// SPDX-License-Identifier: MIT
// vexacm compile with several files or all compilers.
#include "batch_test.hpp"

namespace {

class CompileMany : public Batch_test {
protected:
    CompileMany() {
        add_source("a.frag");
        add_source("b.vert", "ERROR");
        add_source("c.cl");
    }

    Process_result compile(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "compile");
        return vexacm(arguments);
    }
};

TEST_F(CompileMany, SeveralFilesThenEachWithTheFirstCompilerForIt) {
    const auto result = compile({"--json", "c.cl", "a.frag", "b.vert", "--kernel", "k"});
    EXPECT_EQ(brief(result.out), line("c.cl", "K580", "compiled") +
                                     line("a.frag", "K580", "compiled") +
                                     line("b.vert", "K580", "errors"));
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 1);
}

TEST_F(CompileMany, FiltersThenTheFirstThatPasses) {
    const auto result = compile({"--json", "a.frag", "a.frag", "--driver", "Vexa-K300_r1p0-00rel0",
                                 "-D", "ONE", "--prerotate"});
    const std::string refused =
        line("a.frag", "K420", "refused",
             " <Compiler Manager Error: Compiler does not support prerotate.\n>");
    EXPECT_EQ(brief(result.out), refused + refused);
    EXPECT_EQ(result.status, 4);
}

TEST_F(CompileMany, AllThenEachCompilerThatPasses) {
    const auto result = compile({"--all", "--json", "a.frag"});
    EXPECT_EQ(brief(result.out), lines("a.frag"));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(compile({"--all", "--json", "a.frag", "c.cl", "--kernel", "k"}).out,
              ordered({"a.frag", "c.cl", "--kernel", "k"}).out);
}

TEST_F(CompileMany, NoJsonThenTheSummary) {
    EXPECT_EQ(compile({"--all", "a.frag", "b.vert"}).out, batch({"a.frag", "b.vert"}).out);
}

TEST_F(CompileMany, StageThenForAllFiles) {
    add_source("plain");
    EXPECT_EQ(brief(compile({"--json", "plain", "a.frag", "--stage", "vertex"}).out),
              line("plain", "K580", "compiled") + line("a.frag", "K580", "compiled"));
    expect(compile({"a.frag", "plain"}), 2, "",
           "vexacm: the ending of 'plain' tells no stage: use --stage\n");
}

// A batch has lists, and a file may be named like one.
TEST_F(CompileMany, AtSignThenAFile) {
    add_source("@a.frag");
    EXPECT_EQ(brief(compile({"--json", "@a.frag", "a.frag"}).out),
              line("@a.frag", "K580", "compiled") + line("a.frag", "K580", "compiled"));
}

TEST_F(CompileMany, AsksWhatOneFileCanGiveThenWrongUse) {
    expect(compile({"a.frag", "b.vert", "-o", "out"}), 2, "",
           "vexacm: -o is for one file and one compiler: for more there is batch --outputs\n");
    expect(compile({"--all", "a.frag", "-o", "out"}), 2, "",
           "vexacm: -o is for one file and one compiler: for more there is batch --outputs\n");
    expect(compile({"a.frag", "b.vert", "--quiet"}), 2, "",
           "vexacm: --quiet is for one file and one compiler\n");
    expect(compile({"a.frag", "-", "--stage", "vertex"}), 2, "",
           "vexacm: standard input is for one file and one compiler\n");
    expect(compile({"a.frag", "c.cl", "--kernel", "k", "--api", "opencl"}), 2, "",
           "vexacm: --api opencl contradicts stage fragment\n");
    expect(compile({"a.frag", "c.cl"}), 2, "",
           "vexacm: name at least one kernel of 'c.cl' with --kernel\n");
    expect(compile({"a.frag", "b.vert", "--kernel", "k"}), 2, "",
           "vexacm: --kernel is given, and no source needs it\n");
    EXPECT_EQ(take_requests(), "");
}

TEST_F(CompileMany, NoneMatchesForSomeThenTheOthersAreCompiled) {
    const auto result =
        compile({"--json", "a.frag", "c.cl", "--kernel", "k", "--core", "Vexa-K460"});
    EXPECT_EQ(brief(result.out), line("a.frag", "K460", "compiled"));
    EXPECT_EQ(result.err, "vexacm: no compiler matches for 1 of 2 sources: with --api 'opencl' "
                          "--core 'Vexa-K460' none is left of Vexa-K580\n");
    EXPECT_EQ(result.status, 3);
}

TEST_F(CompileMany, PluginCrashesThenItCostsOneJob) {
    on("CRASH", "signal 9");
    add_source("b.vert", "CRASH");
    const auto result = compile({"--json", "b.vert", "a.frag"});
    EXPECT_EQ(brief(result.out), line("b.vert", "K580", "crashed", "killed by signal 9 (Killed)") +
                                     line("a.frag", "K580", "compiled"));
    EXPECT_EQ(result.status, 4);
}

} // namespace
