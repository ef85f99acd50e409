// SPDX-License-Identifier: MIT
#include "api_test.hpp"

namespace {

// The extensions of OpenCL compilers.
using OpenClExtensions = Api_test;

const std::vector<std::string> NAMES = {
    "cl_khr_global_int32_base_atomics",
    "cl_khr_global_int32_extended_atomics",
    "cl_khr_local_int32_base_atomics",
    "cl_khr_local_int32_extended_atomics",
    "cl_khr_byte_addressable_store",
    "cl_khr_3d_image_writes",
    "cl_khr_fp64",
    "cl_khr_int64_base_atomics",
    "cl_khr_int64_extended_atomics",
    "cl_khr_fp16",
    "cl_khr_gl_sharing",
    "cl_khr_icd",
    "cl_khr_egl_event",
    "cl_khr_egl_image",
    "cl_qrx_core_id",
    "cl_qrx_printf",
    "cl_qrx_thread_limit_hint",
    "cl_qrx_non_uniform_work_group_size",
    "cl_qrx_import_memory",
};

std::string probe_calls(bool prerotate = false) {
    std::string source;
    for (const std::string& name : NAMES)
        source += "\n#ifdef " + name + "\n#error " + name + "\n#endif";
    source += "\n kernel void k(){}";
    std::vector<std::string> options = {"shader_type", "kernel", "kernel_name", "k"};
    if (prerotate)
        options.insert(options.end(), {"prerotate", "false"});
    options.insert(options.end(), {"compiler_type", "opencl"});
    return compile_call(options, source) + "\nrelease_outputs\n";
}

// A plug-in that reports no extensions; its outputs section is to be filled.
Fake_plugin unreporting() {
    Fake_plugin plugin = opencl_plugin("200", nullptr);
    plugin.outputs("");
    return plugin;
}

// Expects one test compile, and none at the second query.
void expect_extensions(const Fake_plugin& plugin, const std::string& expected,
                       const std::string& error = "") {
    One_plugin one(plugin, "opencl");
    EXPECT_EQ(one.take_calls(), "");
    std::string extensions;
    EXPECT_EQ(stderr_of([&] { extensions = vexacm_get_extensions(0); }), error);
    EXPECT_EQ(extensions, expected);
    EXPECT_EQ(one.take_calls(), probe_calls());
    EXPECT_EQ(stderr_of([&] { extensions = vexacm_get_extensions(0); }), "");
    EXPECT_EQ(extensions, expected);
    EXPECT_EQ(one.take_calls(), "");
}

TEST_F(OpenClExtensions, ReportedOnesAreToldUnchangedAndNotProbed) {
    struct Row {
        std::vector<const char*> reported;
        const char* told;
    };
    const Row rows[] = {
        {{"cl_a"}, "cl_a "}, {{"b", "a"}, "b a "}, {{"a,b"}, "a,b "}, {{""}, " "}, {{nullptr}, " "},
    };
    for (const Row& row : rows) {
        Fake_plugin plugin = opencl_plugin("200", nullptr);
        for (const char* const value : row.reported)
            plugin.pair("opencl_extensions", value);
        One_plugin one(plugin.pair("openglessl_extensions", "GL_OTHER"), "opencl");
        EXPECT_EQ(stderr_of([&] { EXPECT_STREQ(vexacm_get_extensions(0), row.told); }), "");
        EXPECT_EQ(one.take_calls(), "");
    }
}

TEST_F(OpenClExtensions, NoDiagnosticIsNoExtension) {
    expect_extensions(unreporting(), "");
    expect_extensions(opencl_plugin("200", nullptr), "");
}

TEST_F(OpenClExtensions, EveryNameIsRecognised) {
    for (const std::string& name : NAMES) {
        SCOPED_TRACE(name);
        expect_extensions(unreporting().a(("1:2: error: " + name).c_str()), name + " ");
    }
}

TEST_F(OpenClExtensions, OneDiagnosticQuotesAllOfThemInTheOrderOfTheList) {
    std::string backwards;
    std::string expected;
    for (const std::string& name : NAMES) {
        backwards = name + "\n" + backwards;
        expected += name + " ";
    }
    expect_extensions(unreporting().a(backwards.c_str()), expected);
}

TEST_F(OpenClExtensions, DiagnosticsAreReadInTheirOrder) {
    expect_extensions(unreporting().a("cl_qrx_printf").a("cl_khr_fp64").a("cl_khr_icd"),
                      "cl_qrx_printf cl_khr_fp64 cl_khr_icd ");
    expect_extensions(unreporting().a("cl_khr_icd, cl_khr_fp16").a("cl_khr_fp64 cl_khr_fp16"),
                      "cl_khr_fp16 cl_khr_icd cl_khr_fp64 cl_khr_fp16 ");
}

TEST_F(OpenClExtensions, ThatAreQuotedTwiceAreToldTwice) {
    expect_extensions(unreporting().a("cl_khr_fp64").a("cl_khr_fp64"), "cl_khr_fp64 cl_khr_fp64 ");
    // In one diagnostic they count once.
    expect_extensions(unreporting().a("cl_khr_fp64 cl_khr_fp64"), "cl_khr_fp64 ");
}

TEST_F(OpenClExtensions, AreFoundAnywhereInADiagnostic) {
    expect_extensions(unreporting().a("xcl_khr_fp64x"), "cl_khr_fp64 ");
    expect_extensions(unreporting().a("'cl_khr_fp16'").a("\ncl_khr_icd\n"),
                      "cl_khr_fp16 cl_khr_icd ");
}

TEST_F(OpenClExtensions, OtherDiagnosticsQuoteNone) {
    expect_extensions(unreporting()
                          .a("")
                          .a("error")
                          .a("cl_khr_fp")
                          .a("CL_KHR_FP64")
                          .a("cl_khr fp64")
                          .a("cl_khr_"),
                      "");
}

TEST_F(OpenClExtensions, ANullDiagnosticQuotesNone) {
    expect_extensions(unreporting().a("cl_khr_fp64").a(nullptr).a("cl_khr_icd"),
                      "cl_khr_fp64 cl_khr_icd ",
                      "Compiler Manager Error: NULL inputs to string_copy.\n");
    expect_extensions(unreporting().a(nullptr), "",
                      "Compiler Manager Error: NULL inputs to string_copy.\n");
}

TEST_F(OpenClExtensions, ANullListOfDiagnosticsIsNone) {
    expect_extensions(unreporting().line("num-a 3"), "");
}

TEST_F(OpenClExtensions, OnlyTheFirstListIsRead) {
    expect_extensions(
        unreporting().b("cl_khr_fp64").list().item("cl_khr_fp64").binary("cl_khr_fp64"), "");
}

TEST_F(OpenClExtensions, OfAFailedProbeAreNone) {
    struct Row {
        int result;
        const char* error;
    };
    for (const Row row :
         {Row{1, "Compiler Manager Error: Core not supported.\n"},
          Row{2, "Compiler Manager Error: Invalid Parameters.\n"},
          Row{3, "Compiler Manager Error: Binary output not supported.\n"},
          Row{4, "Compiler Manager Error: Compiler memory error.\n"}, Row{5, ""}, Row{-1, ""}}) {
        SCOPED_TRACE(row.result);
        expect_extensions(unreporting().a("cl_khr_fp64").result(row.result), "", row.error);
    }
}

TEST_F(OpenClExtensions, AreProbedWithoutBinaryOrRotation) {
    Fake_plugin able = opencl_plugin("200", nullptr);
    able.pair("prerotate", "true").binary_output(1).outputs("").a("cl_khr_fp64");
    One_plugin plugin(able, "opencl");
    EXPECT_STREQ(vexacm_get_extensions(0), "cl_khr_fp64 ");
    EXPECT_EQ(plugin.take_calls(), probe_calls(true));
}

TEST_F(OpenClExtensions, AreNotProbedByARequest) {
    One_plugin plugin(unreporting(), "opencl");
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request("kernel").kernels({"main"}).of("source")));
    EXPECT_NE(stderr_of([&] { EXPECT_FALSE(outputs.compile(Request("geometry"))); }), "");
    EXPECT_EQ(plugin.take_calls(), compile_call({"shader_type", "kernel", "kernel_name", "main",
                                                 "compiler_type", "opencl"},
                                                "source") +
                                       "\nrelease_outputs\n");
}

TEST_F(OpenClExtensions, OfOneCoreAreProbedForEachLanguage) {
    Fake_plugin plugin = opencl_plugin("200", nullptr);
    plugin.pair("compiler_type", "openglessl").pair("openglessl_version", "100");
    plugin.outputs("kernel void").a("cl_khr_icd");
    plugin.outputs("GL_OES_texture_3D");
    plugin.outputs("").a("not known");
    One_plugin one(plugin, "opencl");
    EXPECT_STREQ(vexacm_get_extensions(0), "cl_khr_icd ");
    EXPECT_STREQ(vexacm_get_extensions(1), "GL_OES_texture_3D ");
}

} // namespace
