// SPDX-License-Identifier: MIT
#include "fault_test.hpp"

namespace {

using MemoryRunsOutCompiling = Fault_test;

const std::string ERROR = "Compiler Manager Error: ";

TEST_F(MemoryRunsOutCompiling, AShader) {
    plugins.add_driver("openglessl", NEWEST,
                       gles_plugin().pair("prerotate", "true").outputs("").b("warning"));
    compile_in_scenario(Request().define({"A", "B=a value too long for a short string"}).rotated());
    run_out_of_memory({"true b(warning)", "", ""});
}

TEST_F(MemoryRunsOutCompiling, AKernelWithAllOutputs) {
    Fake_plugin plugin = opencl_plugin();
    plugin.outputs("").list().item("x").item("y").list().list().item("z");
    plugin.binary("bytes").a("a").a(nullptr).b("b").b("c");
    plugins.add_driver("opencl", NEWEST, plugin);
    compile_in_scenario(Request("kernel").kernels({"k", "l"}).define({"A"}).binary());
    run_out_of_memory({"true list(x,y) list() list(z) binary(6279746573) a(a,(null)) b(b,c)",
                       ERROR + "NULL inputs to string_copy.\n", ""});
}

TEST_F(MemoryRunsOutCompiling, ResultsThatAreFailures) {
    const std::vector<std::pair<int, std::string>> results = {
        {1, ERROR + "Core not supported.\n"},
        {2, ERROR + "Invalid Parameters.\n"},
        {3, ERROR + "Binary output not supported.\n"},
        {4, ERROR + "Compiler memory error.\n"},
        {-1, ""},
    };
    for (const auto& [result, err] : results) {
        SCOPED_TRACE(result);
        plugins.add_driver("openglessl", NEWEST, gles_plugin().outputs("").result(result));
        compile_in_scenario(Request());
        run_out_of_memory({"false ", err, ""});
    }
}

// Most refusals allocate nothing and cannot fail.
TEST_F(MemoryRunsOutCompiling, RequestsThatAreRefused) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin("300"));
    plugins.add_driver("opencl", MIDDLE, opencl_plugin());
    plugins.add_driver("openglessl", OLDEST, gles_plugin());
    constexpr unsigned int GLES_300 = 0;
    constexpr unsigned int OPENCL = 1;
    constexpr unsigned int GLES_320 = 2;
    const std::string long_type(600, 'x');
    vexaoc_outputs record;
    scenario.before = [this] { EXPECT_EQ(initialise(), ""); };
    scenario.act = [&] {
        const char* const kernel = "k";
        const auto ask = [&](const char* source, const char* type, int num_kernels, bool prerotate,
                             unsigned int id) {
            vexacm_compile(&record, source, type, &kernel, num_kernels, false, prerotate, nullptr,
                           -1, id);
        };
        vexacm_compile(nullptr, "", "kernel", nullptr, 0, false, false, nullptr, 0, 0);
        ask(nullptr, "fragment", 0, false, GLES_300);
        ask("", nullptr, 0, false, GLES_300);
        ask("", "kernel", 0, false, GLES_300);
        ask("", "compute", 0, false, GLES_300);
        ask("", "geometry", 0, false, GLES_300);
        ask("", "tessellation_control", 0, false, GLES_300);
        ask("", "geometry", 0, false, GLES_320);
        ask("", "tessellation_evaluation", 0, false, GLES_320);
        ask("", "compute", 1, false, GLES_320);
        ask("", "vertex", 0, true, GLES_320);
        ask("", "vertex", 0, false, OPENCL);
        ask("", "kernel", 0, false, OPENCL);
        // A line of this length is not composed on the stack.
        ask("", long_type.c_str(), 0, false, OPENCL);
    };
    scenario.result = [] { return ""; };
    EXPECT_EQ(
        scenario.run_out_of_memory(
            {"",
             ERROR + "NULL inputs passed to compile function.\n" + ERROR +
                 "NULL inputs passed to compile function.\n" + ERROR +
                 "NULL inputs passed to compile function.\n" + ERROR +
                 "Only OpenCL compilers can compile kernels.\n" + ERROR +
                 "Compiler must support OpenGL ES 3.1 to use compute shaders.\n" + ERROR +
                 "Compiler must support OpenGL ES 3.1 and extension GL_EXT_geometry_shader to use "
                 "geometry shaders.\n" +
                 ERROR +
                 "Compiler must support OpenGL ES 3.1 and extension GL_EXT_tessellation_shader to "
                 "use tessellation shaders.\n" +
                 ERROR +
                 "Compiler must support extension GL_EXT_geometry_shader to use geometry "
                 "shaders.\n" +
                 ERROR +
                 "Compiler must support extension GL_EXT_tessellation_shader to use tessellation "
                 "shaders.\n" +
                 ERROR +
                 "Cannot specify a shader name when compiling using an OpenGL ES compiler.\n" +
                 ERROR + "Compiler does not support prerotate.\n" + ERROR +
                 "Shader type vertex can only be compiled using an OpenGL ES compiler.\n" + ERROR +
                 "Must specify at least one kernel name when compiling using an OpenCL "
                 "compiler.\n" +
                 ERROR + "Unknown shader type: " + long_type + ".\n",
             ""}),
        1);
}

TEST_F(MemoryRunsOutCompiling, AGeometryShaderForWhichExtensionsAreProbed) {
    Fake_plugin plugin = gles_plugin("310", nullptr);
    plugin.outputs("GL_EXT_geometry_shader").outputs(": require").a("no").outputs("").b("done");
    plugins.add_driver("openglessl", NEWEST, plugin);
    compile_in_scenario(Request("geometry"));
    run_out_of_memory({"true b(done)", "", ""});
}

} // namespace
