// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

namespace {

using CompileCommand = Tool_test;

const std::string K580 = "compiler: Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0 openglessl\n";
const std::string K420 = "compiler: Vexa-K300_r1p0-00rel0 Vexa-K420 r2p0_02rel1 openglessl\n";
const std::string KERNELS = "compiler: Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0 opencl\n";

/// What K580 is asked for when its options are these.
std::string request(std::string_view options, std::string_view source = "void%20main()%20{}") {
    return "openglessl/libVexa-K300_r5p0-06rel0.so compile core=k58x revision=r0p0_00rel0 binary=0 "
           "outputs=zeroed options=" +
           std::string(options) + " source=" + std::string(source) + "\n";
}

std::string shader_request(const std::string& stage) {
    return request("6 shader_type " + stage + " prerotate false compiler_type openglessl");
}

TEST_F(CompileCommand, EndingOfTheFileThenItsStage) {
    const std::pair<std::string, std::string> endings[] = {
        {"vert", "vertex"}, {"frag", "fragment"}, {"comp", "compute"}};
    for (const auto& [ending, stage] : endings) {
        add_source("a." + ending);
        expect(vexacm({"compile", "a." + ending}), 0, K580, "");
        EXPECT_EQ(take_requests(), shader_request(stage));
    }
}

TEST_F(CompileCommand, EndingOfAnOptionalStageThenItsExtensionIsAskedFor) {
    const std::pair<std::string, std::string> endings[] = {
        {"geom", "GL_EXT_geometry_shader to use geometry"},
        {"tesc", "GL_EXT_tessellation_shader to use tessellation"},
        {"tese", "GL_EXT_tessellation_shader to use tessellation"}};
    for (const auto& [ending, complaint] : endings) {
        add_source("a." + ending);
        expect(vexacm({"compile", "a." + ending}), 4, K580,
               "Compiler Manager Error: Compiler must support extension " + complaint +
                   " shaders.\nvexacm: a." + ending +
                   ": the compiler did not carry out the request\n");
    }
}

TEST_F(CompileCommand, StageThenItWinsOverTheEnding) {
    add_source("a.vert");
    for (const std::string stage : {"vertex", "fragment", "compute"}) {
        expect(vexacm({"compile", "a.vert", "--stage", stage}), 0, K580, "");
        EXPECT_EQ(take_requests(), shader_request(stage));
    }
}

TEST_F(CompileCommand, StageOfAnExtensionThenPassedOn) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k58x", "r0p0_00rel0").pair("openglessl_version", "320");
    plugin.pair("openglessl_extensions", "GL_EXT_geometry_shader");
    plugin.pair("openglessl_extensions", "GL_EXT_tessellation_shader").pair("prerotate", "true");
    plugins.add_driver("openglessl", "Vexa-K300_r5p0-06rel0", plugin);
    add_source("a");
    for (const std::string stage :
         {"geometry", "tessellation_control", "tessellation_evaluation"}) {
        expect(vexacm({"compile", "a", "--stage", stage}), 0, K580, "");
        EXPECT_EQ(take_requests(), shader_request(stage));
    }
}

TEST_F(CompileCommand, NeitherEndingNorStageThenWrongUse) {
    for (const std::string name : {"a", "a.glsl", "a.FRAG", "frag", "-"})
        expect(vexacm({"compile", name}), 2, "",
               "vexacm: the ending of '" + name + "' tells no stage: use --stage\n");
}

TEST_F(CompileCommand, UnknownStageThenWrongUse) {
    expect(vexacm({"compile", "a.frag", "--stage", "mesh"}), 2, "",
           usage_error("--stage: mesh not in {vertex,fragment,compute,geometry,"
                       "tessellation_control,tessellation_evaluation,kernel}"));
}

TEST_F(CompileCommand, KernelThenItsNamesArePassedOn) {
    add_source("a.cl");
    expect(vexacm({"compile", "a.cl", "--kernel", "one", "--kernel=two"}), 0, KERNELS, "");
    EXPECT_EQ(take_requests(),
              "opencl/libVexa-K300_r5p0-06rel0.so compile core=k58x revision=r0p0_00rel0 binary=0 "
              "outputs=zeroed options=8 shader_type kernel kernel_name one kernel_name two "
              "compiler_type opencl source=void%20main()%20{}\n");
}

TEST_F(CompileCommand, KernelStageForAnyFileThenOpenCl) {
    add_source("a.frag");
    expect(vexacm({"compile", "a.frag", "--stage", "kernel", "--kernel", "k"}), 0, KERNELS, "");
}

TEST_F(CompileCommand, KernelWithoutANameThenWrongUse) {
    add_source("a.cl");
    expect(vexacm({"compile", "a.cl"}), 2, "", "vexacm: name at least one kernel with --kernel\n");
}

TEST_F(CompileCommand, KernelNameForAShaderThenWrongUse) {
    add_source("a.geom");
    expect(vexacm({"compile", "a.geom", "--kernel", "k"}), 2, "",
           "vexacm: --kernel is for stage kernel, not geometry\n");
}

TEST_F(CompileCommand, ApiThatTheStageImpliesThenAccepted) {
    add_source("a.frag");
    expect(vexacm({"compile", "a.frag", "--api", "openglessl"}), 0, K580, "");
}

TEST_F(CompileCommand, ApiThatContradictsTheStageThenWrongUse) {
    add_source("a.frag");
    add_source("a.cl");
    expect(vexacm({"compile", "a.frag", "--api", "opencl"}), 2, "",
           "vexacm: --api opencl contradicts stage fragment\n");
    expect(vexacm({"compile", "a.cl", "--api", "openglessl", "--kernel", "k"}), 2, "",
           "vexacm: --api openglessl contradicts stage kernel\n");
}

TEST_F(CompileCommand, FiltersThenTheFirstThatPasses) {
    add_source("a.frag");
    const std::pair<std::string, std::string> choices[] = {{"--driver=Vexa-K300_r1p0-00rel0", K420},
                                                           {"--core=Vexa-K420", K420},
                                                           {"--revision=r2p0_02rel1", K420},
                                                           {"--binary-output=false", K420},
                                                           {"--min-version=300", K580}};
    for (const auto& [filter, compiler] : choices)
        expect(vexacm({"compile", filter, "a.frag"}), 0, compiler, "");
}

TEST_F(CompileCommand, NoCompilerThenSaid) {
    add_source("a.frag");
    expect(vexacm({"compile", "a.frag", "--min-version", "321"}), 3, "",
           "vexacm: no compiler matches: with --api 'openglessl' --min-version 321 none is left of "
           "320, 300\n");
    expect(vexacm({"compile", "a.frag", "--min-version", "321", "--json"}), 3, "",
           "vexacm: no compiler matches: with --api 'openglessl' --min-version 321 none is left of "
           "320, 300\n");
}

TEST_F(CompileCommand, DefinitionsThenPassedOnAsWritten) {
    add_source("a.frag");
    expect(vexacm({"compile", "-D", "A", "-DB=1 2", "a.frag", "-D", "-C", "-D", "[d,e]", "-D", "",
                   "-D", "{}"}),
           0, K580, "");
    EXPECT_EQ(take_requests(),
              request("18 shader_type fragment prerotate false compiler_type openglessl define A "
                      "define B=1%202 define -C define [d,e] define  define {}"));
}

TEST_F(CompileCommand, PrerotateThenAskedFor) {
    add_source("a.frag");
    expect(vexacm({"compile", "a.frag", "--prerotate"}), 0, K580, "");
    EXPECT_EQ(take_requests(),
              request("6 shader_type fragment prerotate true compiler_type openglessl"));
}

TEST_F(CompileCommand, PrerotateNotSupportedThenRefused) {
    add_source("a.frag");
    expect(vexacm({"compile", "a.frag", "--prerotate", "--core", "Vexa-K420"}), 4,
           "compiler: Vexa-K300_r1p0-00rel0 Vexa-K420 r2p0_02rel1 openglessl\n",
           "Compiler Manager Error: Compiler does not support prerotate.\n"
           "vexacm: a.frag: the compiler did not carry out the request\n");
}

TEST_F(CompileCommand, PluginFailsWithoutAWordThenSaid) {
    add_source("a.frag", "FAIL");
    expect(vexacm({"compile", "a.frag"}), 4, K580,
           "vexacm: a.frag: the compiler did not carry out the request\n");
    expect(vexacm({"compile", "a.frag", "--json"}), 4, "",
           "vexacm: a.frag: the compiler did not carry out the request\n");
}

TEST_F(CompileCommand, WarningThenToldAndDone) {
    add_source("a.frag", "WARN");
    expect(vexacm({"compile", "a.frag"}), 0, K580, "a.frag: 1:2: warning\n");
}

TEST_F(CompileCommand, ErrorsThenToldBeforeWarnings) {
    add_source("a.frag", "ERROR");
    expect(vexacm({"compile", "./a.frag"}), 1, K580,
           "./a.frag: 3:4: error\n./a.frag: 5:6: another\n./a.frag: 1:2: warning\n");
}

TEST_F(CompileCommand, StandardInputThenCompiledWhole) {
    const std::string source(200000, 'x');
    expect(vexacm({"compile", "-", "--stage", "fragment"}, source), 0, K580, "");
    EXPECT_EQ(take_requests(),
              request("6 shader_type fragment prerotate false compiler_type openglessl", source));
    expect(vexacm({"compile", "--stage", "fragment", "-"}, "WARN"), 0, K580,
           "<stdin>: 1:2: warning\n");
}

TEST_F(CompileCommand, SourceIsEmptyThenCompiled) {
    add_source("a.frag", "");
    expect(vexacm({"compile", "a.frag"}), 0, K580, "");
}

TEST_F(CompileCommand, SourceCannotBeReadThenFailed) {
    expect(vexacm({"compile", "a.frag"}), 5, "",
           "vexacm: cannot open a.frag: No such file or directory\n");
    expect(vexacm({"compile", ".", "--stage", "vertex"}), 5, "",
           "vexacm: cannot read .: Is a directory\n");
    expect(vexacm({"compile", "a.frag", "--core", "none"}), 5, "",
           "vexacm: cannot open a.frag: No such file or directory\n");
}

TEST_F(CompileCommand, SourceWithNulBytesThenFailed) {
    add_source("a.frag", std::string_view("a\0b", 3));
    expect(vexacm({"compile", "a.frag"}), 5, "",
           "vexacm: cannot compile a.frag: it has NUL bytes\n");
    // Found at once, although this has no end.
    expect(vexacm({"compile", "/dev/zero", "--stage", "vertex"}), 5, "",
           "vexacm: cannot compile /dev/zero: it has NUL bytes\n");
}

TEST_F(CompileCommand, FileWithTheNameOfACommandOrOptionThenAFile) {
    add_source("list");
    add_source("--json");
    add_source("--odd=");
    expect(vexacm({"compile", "list", "--stage", "vertex"}), 0, K580, "");
    expect(vexacm({"compile", "--stage", "vertex", "--", "--json"}), 0, K580, "");
    expect(vexacm({"compile", "--stage", "vertex", "--", "--odd="}), 0, K580, "");
}

TEST_F(CompileCommand, QuietThenDiagnosticsAlone) {
    add_source("a.frag", "ERROR");
    add_source("b.frag", "BINARY");
    expect(vexacm({"compile", "a.frag", "--quiet"}), 1, "",
           "a.frag: 3:4: error\na.frag: 5:6: another\na.frag: 1:2: warning\n");
    expect(vexacm({"compile", "b.frag", "--quiet", "-o", "out"}), 0, "", "");
    EXPECT_EQ(read_file(path("out")), std::string_view("\x00\x01\n\xff", 4));
    expect(vexacm({"compile", "b.frag", "--quiet", "--json"}), 2, "",
           "vexacm: --json and --quiet exclude each other\n");
}

TEST_F(CompileCommand, NoFileThenWrongUse) {
    expect(vexacm({"compile"}), 2, "", usage_error("FILE is required"));
}

} // namespace
