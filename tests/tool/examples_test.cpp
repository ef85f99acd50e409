// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

namespace {

using ExampleList = Tool_test;
using ExampleCompile = Tool_test;
using ExampleBinary = Tool_test;
using ExampleCount = Tool_test;
using ExampleListCpp = Tool_test;

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

TEST_F(ExampleBinary, ShaderIsRightThenItsBinaryInTheFile) {
    expect(run_here({EXAMPLE_BINARY, plugins.root(), "Vexa-K460", "out"}, "BINARY"), 0, "", "");
    EXPECT_EQ(read_file(path("out")), std::string_view("\x00\x01\n\xff", 4));
    EXPECT_NE(take_requests().find("core=k46x revision=r0p1_00rel0 binary=1 outputs=zeroed "
                                   "options=10 shader_type fragment prerotate false "
                                   "compiler_type openglessl define QUALITY=2 define FOG "),
              std::string::npos);
}

TEST_F(ExampleBinary, ShaderHasErrorsThenToldAndNoFile) {
    expect(run_here({EXAMPLE_BINARY, plugins.root(), "Vexa-K460", "out"}, "ERROR"), 1, "",
           "3:4: error\n5:6: another\n");
    EXPECT_EQ(files(), std::vector<std::string>{});
}

TEST_F(ExampleBinary, NoCompilerReturnsBinariesThenSaid) {
    expect(run_here({EXAMPLE_BINARY, plugins.root(), "Vexa-K420", "out"}, "x"), 1, "",
           "no compiler for Vexa-K420 returns binaries\n");
}

TEST_F(ExampleBinary, ShaderIsTooLongThenSaid) {
    expect(
        run_here({EXAMPLE_BINARY, plugins.root(), "Vexa-K460", "out"}, std::string(1 << 20, 'x')),
        1, "", "the shader is too long\n");
}

TEST_F(ExampleBinary, WithoutArgumentsThenUsage) {
    expect(run_here({EXAMPLE_BINARY}), 2, "",
           "usage: " EXAMPLE_BINARY " PLUGINS CORE OUTPUT <SHADER\n");
}

TEST_F(ExampleCount, DirectoryThenNumber) {
    expect(run_here({EXAMPLE_COUNT, plugins.root()}), 0, "4\n", "");
}

TEST_F(ExampleCount, InitialisationThrowsThenSaid) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k58x", "r0p0").pair("openglessl_version", "new");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(run_here({EXAMPLE_COUNT, plugins.root()}), 1, "",
           plugins.root() + ": cannot be used: stoi\n");
    expect(run_here({EXAMPLE_LIST_CPP, plugins.root()}), 1, "", plugins.root() + ": stoi\n");
}

TEST_F(ExampleListCpp, DirectoryThenItsShaderCompilersAndOneCompile) {
    expect(run_here({EXAMPLE_LIST_CPP, plugins.root()}), 0,
           "1: Vexa-K580 r0p0_00rel0\n2: Vexa-K460 r0p1_00rel0\n3: Vexa-K420 r2p0_02rel1\n"
           "compiled\n",
           "");
}

} // namespace
