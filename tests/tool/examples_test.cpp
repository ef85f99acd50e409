// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

namespace {

using ExampleList = Tool_test;
using ExampleCompile = Tool_test;

TEST_F(ExampleList, DirectoryThenEveryCompiler) {
    expect(run_here({EXAMPLE_LIST, plugins.root()}), 0,
           "0: Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0, opencl up to 200\n"
           "1: Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0, openglessl up to 320\n"
           "2: Vexa-K300_r5p0-06rel0 Vexa-K460 r0p1_00rel0, openglessl up to 320\n"
           "3: Vexa-K300_r1p0-00rel0 Vexa-K420 r2p0_02rel1, openglessl up to 300\n",
           "");
}

TEST_F(ExampleList, WithoutADirectoryThenUsage) {
    expect(run_here({EXAMPLE_LIST}), 2, "", "usage: " EXAMPLE_LIST " PLUGINS\n");
}

TEST_F(ExampleList, OutputIsFullThenFailed) {
    expect(run_here({EXAMPLE_LIST, plugins.root()}, "", "exec >/dev/full"), 1, "", "");
}

TEST_F(ExampleCompile, SourceIsRightThenSilent) {
    add_source("a.frag");
    expect(run_here({EXAMPLE_COMPILE, plugins.root(), "a.frag", "fragment"}), 0, "", "");
    EXPECT_NE(take_requests().find("core=k58x"), std::string::npos);
}

TEST_F(ExampleCompile, SourceHasErrorsThenPrinted) {
    add_source("a.frag", "ERROR");
    expect(run_here({EXAMPLE_COMPILE, plugins.root(), "a.frag", "fragment"}), 1, "",
           "a.frag: 3:4: error\na.frag: 5:6: another\na.frag: 1:2: warning\n");
}

TEST_F(ExampleCompile, KernelThenItsNamesArePassedOn) {
    add_source("a.cl", "WARN");
    expect(run_here({EXAMPLE_COMPILE, plugins.root(), "a.cl", "kernel", "one", "two"}), 0, "",
           "a.cl: 1:2: warning\n");
    EXPECT_NE(take_requests().find(" kernel_name one kernel_name two "), std::string::npos);
}

TEST_F(ExampleCompile, RequestIsRefusedThenFailed) {
    add_source("a.frag");
    expect(run_here({EXAMPLE_COMPILE, plugins.root(), "a.frag", "mesh"}), 1, "",
           "Compiler Manager Error: Unknown shader type: mesh.\n");
}

TEST_F(ExampleCompile, NoCompilerThenSaid) {
    plugins.remove("opencl");
    add_source("a.cl");
    expect(run_here({EXAMPLE_COMPILE, plugins.root(), "a.cl", "kernel", "k"}), 1, "",
           "Unable to open library directory " + plugins.path("opencl") +
               "\nno compiler for opencl\n");
}

TEST_F(ExampleCompile, FileCannotBeReadThenSaid) {
    add_source("nul.frag", std::string_view("a\0b", 3));
    add_source("long.frag", std::string(1 << 20, 'x'));
    for (const std::string name : {"gone.frag", ".", "nul.frag", "long.frag"})
        expect(run_here({EXAMPLE_COMPILE, plugins.root(), name, "fragment"}), 1, "",
               name + ": cannot be read, is no text or is too long\n");
}

TEST_F(ExampleCompile, TooFewArgumentsThenUsage) {
    expect(run_here({EXAMPLE_COMPILE, plugins.root(), "a.frag"}), 2, "",
           "usage: " EXAMPLE_COMPILE " PLUGINS FILE SHADER_TYPE [KERNEL...]\n");
}

} // namespace
