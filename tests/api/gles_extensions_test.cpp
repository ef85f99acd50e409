// SPDX-License-Identifier: MIT
#include "api_test.hpp"

namespace {

// The extensions of OpenGL ES compilers.
using GlesExtensions = Api_test;

const std::vector<std::string> NAMES = {
    "GL_QRX_shader_framebuffer_fetch",
    "GL_QRX_shader_framebuffer_fetch_depth_stencil",
    "GL_EXT_shader_pixel_local_storage",
    "GL_EXT_shader_texture_lod",
    "GL_EXT_shadow_samplers",
    "GL_OES_EGL_image_external",
    "GL_OES_gpu_shader5",
    "GL_OES_standard_derivatives",
    "GL_OES_texture_3D",
    "GL_OES_texture_buffer",
    "GL_OES_texture_cube_map_array",
    "GL_ANDROID_extension_pack_es31a",
    "GL_KHR_blend_equation_advanced",
    "GL_OES_sample_variables",
    "GL_OES_shader_image_atomic",
    "GL_OES_shader_multisample_interpolation",
    "GL_OES_texture_storage_multisample_2d_array",
    "GL_EXT_geometry_shader",
    "GL_EXT_gpu_shader5",
    "GL_EXT_primitive_bounding_box",
    "GL_EXT_shader_io_blocks",
    "GL_EXT_tessellation_shader",
    "GL_EXT_texture_buffer",
    "GL_EXT_texture_cube_map_array",
};

constexpr const char* PACK = "GL_ANDROID_extension_pack_es31a";

// The answer when all names but one are accepted.
std::string all_names(const std::string& but = "") {
    std::string text;
    for (const std::string& name : NAMES) {
        if (name == but)
            continue;
        text += name + " ";
        if (name == PACK)
            text += "GL_EXT_color_buffer_half_float GL_EXT_color_buffer_float ";
    }
    return text;
}

// All test compiles, as the log names them.
std::string probes(const std::string& version_line, bool prerotate = false,
                   const char* core = "k46x") {
    std::vector<std::string> options = {"shader_type", "fragment"};
    if (prerotate)
        options.insert(options.end(), {"prerotate", "false"});
    options.insert(options.end(), {"compiler_type", "openglessl"});
    std::string text;
    for (const std::string& name : NAMES)
        text += compile_call(options,
                             version_line + "\n#extension " + name + " : require\n void main() {}",
                             false, core) +
                "\nrelease_outputs\n";
    return text;
}

// A plug-in that reports no extensions.
Fake_plugin unreporting(const char* version = "310") {
    return gles_plugin(version, nullptr);
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

// Expects the answer twice, the second without a call to the plug-in.
void expect_extensions(One_plugin& plugin, const std::string& expected,
                       const std::string& error = "") {
    std::string extensions;
    EXPECT_EQ(stderr_of([&] { extensions = vexacm_get_extensions(0); }), error);
    EXPECT_EQ(extensions, expected);
    plugin.take_calls();
    const char* const again = vexacm_get_extensions(0);
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(vexacm_get_extensions(0), again); }), "");
    EXPECT_EQ(again, expected);
    EXPECT_EQ(plugin.take_calls(), "");
}

TEST_F(GlesExtensions, ReportedOnesAreToldUnchangedAndNotProbed) {
    struct Row {
        std::vector<const char*> reported;
        const char* told;
    };
    const Row rows[] = {
        {{"GL_A"}, "GL_A "},
        {{"A", "B"}, "A B "},
        {{"B", "A", "B"}, "B A B "},
        {{"A,B;C"}, "A,B;C "},
        {{"A  B "}, "A  B  "},
        {{"\x80\n%s"}, "\x80\n%s "},
        {{"", "A"}, " A "},
        // An empty name is a reported one: its blank makes the text known.
        {{""}, " "},
        {{nullptr}, " "},
        {{"", nullptr}, "  "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.told);
        Fake_plugin plugin = unreporting();
        for (const char* const value : row.reported)
            plugin.pair("openglessl_extensions", value);
        plugin.pair("opencl_extensions", "cl_other");
        One_plugin one(plugin);
        EXPECT_EQ(stderr_of([&] { EXPECT_STREQ(vexacm_get_extensions(0), row.told); }), "");
        EXPECT_EQ(one.take_calls(), "");
    }
}

TEST_F(GlesExtensions, ThoseOfTheOtherLanguageDoNotCount) {
    Fake_plugin plugin = unreporting();
    One_plugin one(plugin.pair("opencl_extensions", "cl_other"));
    EXPECT_EQ(vexacm_get_extensions(0), all_names());
}

TEST_F(GlesExtensions, EveryNameIsProbedOnceInOrder) {
    One_plugin plugin(unreporting());
    EXPECT_EQ(plugin.take_calls(), "");
    EXPECT_EQ(stderr_of([] { EXPECT_EQ(vexacm_get_extensions(0), all_names()); }), "");
    EXPECT_EQ(plugin.take_calls(), probes("#version 310 es"));
    EXPECT_EQ(stderr_of([] { EXPECT_EQ(vexacm_get_extensions(0), all_names()); }), "");
    EXPECT_EQ(plugin.take_calls(), "");
}

TEST_F(GlesExtensions, TheVersionLineIsThatOfTheCompiler) {
    struct Row {
        const char* version;
        const char* line;
    };
    const Row rows[] = {
        {"100", "#version 100"},          {"300", "#version 300 es"},
        {"310", "#version 310 es"},       {"320", "#version 320 es"},
        {"0", "#version 0 es"},           {"101", "#version 101 es"},
        {"1000", "#version 1000 es"},     {"1234567", "#version 1234567 es"},
        {"-1", "#version 4294967295 es"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.version);
        One_plugin plugin(unreporting(row.version));
        EXPECT_EQ(vexacm_get_extensions(0), all_names());
        EXPECT_EQ(plugin.take_calls(), probes(row.line));
    }
}

TEST_F(GlesExtensions, TheVersionLineIsCappedWithTheVersion) {
    Fake_plugin capped = Fake_plugin::of_type("openglessl");
    capped.core("k42x", "r0p0_00rel0").pair("openglessl_version", "320");
    One_plugin plugin(capped);
    EXPECT_EQ(vexacm_get_extensions(0), all_names());
    EXPECT_EQ(plugin.take_calls(), probes("#version 310 es", false, "k42x"));
}

TEST_F(GlesExtensions, WithoutAVersionTheLineSaysZero) {
    Fake_plugin versionless = Fake_plugin::of_type("openglessl");
    One_plugin plugin(versionless.core("k46x", "r0p0_00rel0"));
    EXPECT_EQ(vexacm_get_extensions(0), all_names());
    EXPECT_EQ(plugin.take_calls(), probes("#version 0 es"));
}

TEST_F(GlesExtensions, AreProbedWithoutBinaryOrRotation) {
    Fake_plugin able = unreporting();
    One_plugin plugin(able.pair("prerotate", "true").binary_output(1));
    EXPECT_EQ(vexacm_get_extensions(0), all_names());
    EXPECT_EQ(plugin.take_calls(), probes("#version 310 es", true));
}

TEST_F(GlesExtensions, ADiagnosticLeavesItsExtensionOut) {
    for (const std::string& name : NAMES) {
        SCOPED_TRACE(name);
        Fake_plugin plugin = unreporting();
        plugin.outputs(name + " :").a("not known");
        One_plugin one(plugin);
        expect_extensions(one, all_names(name));
    }
}

TEST_F(GlesExtensions, AFailureLeavesItsExtensionOutAndIsTold) {
    for (const std::string& name : NAMES) {
        SCOPED_TRACE(name);
        Fake_plugin plugin = unreporting();
        plugin.outputs(name + " :").result(2);
        One_plugin one(plugin);
        expect_extensions(one, all_names(name), "Compiler Manager Error: Invalid Parameters.\n");
    }
}

TEST_F(GlesExtensions, OnlyDiagnosticsOfTheFirstListCount) {
    Fake_plugin plugin = unreporting();
    plugin.outputs("").b("warning").list().item("x").binary("bytes");
    One_plugin one(plugin);
    expect_extensions(one, all_names());
}

TEST_F(GlesExtensions, ANullDiagnosticCountsAsOne) {
    Fake_plugin plugin = unreporting();
    plugin.outputs("GL_OES_texture_3D").a(nullptr);
    One_plugin one(plugin);
    expect_extensions(one, all_names("GL_OES_texture_3D"),
                      "Compiler Manager Error: NULL inputs to string_copy.\n");
}

TEST_F(GlesExtensions, ANullListOfDiagnosticsIsNone) {
    Fake_plugin plugin = unreporting();
    plugin.outputs("").line("num-a 3");
    One_plugin one(plugin);
    expect_extensions(one, all_names());
}

TEST_F(GlesExtensions, ThatAreAllRefusedAreNotProbedAgain) {
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
        Fake_plugin plugin = unreporting();
        plugin.outputs("").result(row.result);
        One_plugin one(plugin);
        expect_extensions(one, "", repeated(row.error, NAMES.size()));
    }
    Fake_plugin plugin = unreporting();
    plugin.outputs("").a("not known");
    One_plugin one(plugin);
    expect_extensions(one, "");
}

TEST_F(GlesExtensions, AreProbedByAGeometryOrTessellationRequest) {
    for (const std::string type : {"geometry", "tessellation_control", "tessellation_evaluation"}) {
        SCOPED_TRACE(type);
        One_plugin plugin(unreporting());
        const std::string request =
            compile_call({"shader_type", type, "compiler_type", "openglessl"}, "void main() {}") +
            "\nrelease_outputs\n";
        {
            Outputs outputs;
            EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(Request(type.c_str()))); }), "");
        }
        EXPECT_EQ(plugin.take_calls(), probes("#version 310 es") + request);
        // The answer is kept, for every type and for the query.
        for (const std::string next : {"geometry", "tessellation_control"}) {
            Outputs outputs;
            EXPECT_TRUE(outputs.compile(Request(next.c_str())));
            EXPECT_EQ(plugin.take_calls(),
                      compile_call({"shader_type", next, "compiler_type", "openglessl"},
                                   "void main() {}") +
                          "\nrelease_outputs\n");
        }
        EXPECT_EQ(vexacm_get_extensions(0), all_names());
        EXPECT_EQ(plugin.take_calls(), "");
    }
}

TEST_F(GlesExtensions, TheMessagesOfTheProbesComeBeforeThatOfTheRequest) {
    for (const std::string type : {"geometry", "tessellation_control"}) {
        Fake_plugin plugin = unreporting();
        plugin.outputs("GL_KHR").result(1).say("saw GL_KHR");
        plugin.outputs("").result(2);
        One_plugin one(plugin);
        const std::string refusal = "Compiler Manager Error: Invalid Parameters.\n";
        const std::string word = type == "geometry" ? "geometry" : "tessellation";
        const std::string request_error = "Compiler Manager Error: Compiler must support extension "
                                          "GL_EXT_" +
                                          word + "_shader to use " + word + " shaders.\n";
        Outputs outputs;
        EXPECT_EQ(stderr_of([&] { EXPECT_FALSE(outputs.compile(Request(type.c_str()))); }),
                  repeated(refusal, 12) + "saw GL_KHR\n" +
                      "Compiler Manager Error: Core not supported.\n" + repeated(refusal, 11) +
                      request_error);
        EXPECT_TRUE(outputs.is_zeroed());
        EXPECT_EQ(one.take_calls(), probes("#version 310 es"));
        EXPECT_EQ(stderr_of([&] { EXPECT_FALSE(outputs.compile(Request(type.c_str()))); }),
                  request_error);
        EXPECT_EQ(one.take_calls(), "");
    }
}

TEST_F(GlesExtensions, AreNotProbedByARequestBelowVersion31) {
    One_plugin plugin(unreporting("300"));
    for (const char* const type :
         {"geometry", "tessellation_control", "tessellation_evaluation", "compute"}) {
        Outputs outputs;
        stderr_of([&] { EXPECT_FALSE(outputs.compile(Request(type))); });
    }
    EXPECT_EQ(plugin.take_calls(), "");
    EXPECT_EQ(vexacm_get_extensions(0), all_names());
    EXPECT_EQ(plugin.take_calls(), probes("#version 300 es"));
}

TEST_F(GlesExtensions, AreNotProbedByOtherRequests) {
    One_plugin plugin(unreporting());
    for (const char* const type : {"fragment", "vertex", "compute"}) {
        Outputs outputs;
        EXPECT_TRUE(outputs.compile(Request(type)));
    }
    Outputs outputs;
    EXPECT_NE(stderr_of([&] { EXPECT_FALSE(outputs.compile(Request("kernel"))); }), "");
    EXPECT_EQ(lines_of(plugin.take_calls(), "#extension"), "");
}

TEST_F(GlesExtensions, ARequestThatIsRefusedForARotationHasProbed) {
    One_plugin plugin(unreporting());
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_FALSE(outputs.compile(Request("geometry").rotated())); }),
              "Compiler Manager Error: Compiler does not support prerotate.\n");
    EXPECT_EQ(plugin.take_calls(), probes("#version 310 es"));
}

TEST_F(GlesExtensions, EveryCompilerIsProbedOnItsOwn) {
    Fake_plugin plugin = unreporting();
    plugin.core("k58x", "r0p0_00rel0").core("k46x", "r0p0_00rel0");
    One_plugin one(plugin);
    unsigned int id = 0;
    for (const char* const core : {"k58x", "k46x", "k46x"}) {
        EXPECT_EQ(vexacm_get_extensions(id++), all_names());
        EXPECT_EQ(one.take_calls(), probes("#version 310 es", false, core));
    }
}

TEST_F(GlesExtensions, AreProbedAgainInALaterCatalogue) {
    plugins.add_driver("openglessl", NEWEST, unreporting());
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(initialise(), "");
        plugins.take_log();
        EXPECT_EQ(vexacm_get_extensions(0), all_names());
        EXPECT_EQ(lines_of(plugins.take_log(), "GL_OES_texture_3D").empty(), false);
        vexacm_release_libraries();
    }
}

} // namespace
