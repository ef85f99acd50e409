// SPDX-License-Identifier: MIT
#include <climits>

#include "api_test.hpp"

namespace {

// Which requests reach the plug-in.
using CompileRequest = Api_test;

std::string error_line(const std::string& text) {
    return "Compiler Manager Error: " + text + "\n";
}

const std::string NULL_INPUTS = error_line("NULL inputs passed to compile function.");
const std::string ONLY_OPENCL = error_line("Only OpenCL compilers can compile kernels.");
const std::string COMPUTE_31 =
    error_line("Compiler must support OpenGL ES 3.1 to use compute shaders.");
const std::string GEOMETRY_31 =
    error_line("Compiler must support OpenGL ES 3.1 and extension GL_EXT_geometry_shader to use "
               "geometry shaders.");
const std::string GEOMETRY =
    error_line("Compiler must support extension GL_EXT_geometry_shader to use geometry shaders.");
const std::string TESSELLATION_31 =
    error_line("Compiler must support OpenGL ES 3.1 and extension GL_EXT_tessellation_shader to "
               "use tessellation shaders.");
const std::string TESSELLATION = error_line(
    "Compiler must support extension GL_EXT_tessellation_shader to use tessellation shaders.");
const std::string SHADER_NAME =
    error_line("Cannot specify a shader name when compiling using an OpenGL ES compiler.");
const std::string KERNEL_NAME =
    error_line("Must specify at least one kernel name when compiling using an OpenCL compiler.");
const std::string PREROTATE = error_line("Compiler does not support prerotate.");

std::string unknown_type(const std::string& type) {
    return error_line("Unknown shader type: " + type + ".");
}

std::string only_gles(const std::string& type) {
    return error_line("Shader type " + type + " can only be compiled using an OpenGL ES compiler.");
}

const char* const TYPES[] = {
    "fragment", "vertex", "compute", "geometry", "tessellation_control", "tessellation_evaluation",
    "kernel",
};

// Expects the plug-in not to be called and the record to be zeroed.
void expect_refused(One_plugin& plugin, const Request& request, const std::string& error) {
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_FALSE(outputs.compile(request)); }), error);
    EXPECT_TRUE(outputs.is_zeroed());
    EXPECT_EQ(plugin.take_calls(), "");
}

void expect_passed(One_plugin& plugin, const Request& request) {
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(request)); }), "");
    EXPECT_EQ(lines_of(plugin.take_calls(), "compile ").empty(), false);
}

void expect(One_plugin& plugin, const Request& request, const std::string& error) {
    SCOPED_TRACE(request.shader_type ? request.shader_type : "null");
    if (error.empty())
        expect_passed(plugin, request);
    else
        expect_refused(plugin, request, error);
}

TEST_F(CompileRequest, EveryTypeOnEveryVersionOfOpenGlEs) {
    constexpr const char* BOTH = "GL_EXT_geometry_shader GL_EXT_tessellation_shader";
    struct Row {
        const char* version;
        const char* extensions;
        std::string compute, geometry, tessellation; // empty: passes
    };
    const Row rows[] = {
        {"0", BOTH, COMPUTE_31, GEOMETRY_31, TESSELLATION_31},
        {"100", BOTH, COMPUTE_31, GEOMETRY_31, TESSELLATION_31},
        {"300", BOTH, COMPUTE_31, GEOMETRY_31, TESSELLATION_31},
        {"300", "GL_X", COMPUTE_31, GEOMETRY_31, TESSELLATION_31},
        {"309", BOTH, COMPUTE_31, GEOMETRY_31, TESSELLATION_31},
        {"310", BOTH, "", "", ""},
        {"310", "GL_X", "", GEOMETRY, TESSELLATION},
        {"310", "GL_EXT_geometry_shader", "", "", TESSELLATION},
        {"310", "GL_EXT_tessellation_shader", "", GEOMETRY, ""},
        {"320", BOTH, "", "", ""},
        {"320", " ", "", GEOMETRY, TESSELLATION},
        {"2147483647", BOTH, "", "", ""},
        {"-1", BOTH, "", "", ""},
        // Any part of the text counts, not only whole names, but every letter.
        {"310", "xGL_EXT_geometry_shader4,yGL_EXT_tessellation_shaderz", "", "", ""},
        {"310", "gl_ext_geometry_shader GL_EXT_TESSELLATION_SHADER", "", GEOMETRY, TESSELLATION},
        {"310", "GL_EXT_geometry_shade GL_OES_tessellation_shader", "", GEOMETRY, TESSELLATION},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.version) + " " + row.extensions);
        One_plugin plugin(gles_plugin(row.version, row.extensions));
        expect(plugin, Request("fragment"), "");
        expect(plugin, Request("vertex"), "");
        expect(plugin, Request("compute"), row.compute);
        expect(plugin, Request("geometry"), row.geometry);
        expect(plugin, Request("tessellation_control"), row.tessellation);
        expect(plugin, Request("tessellation_evaluation"), row.tessellation);
        expect(plugin, Request("kernel"), ONLY_OPENCL);
        expect(plugin, Request("kernel").kernels({"k"}), ONLY_OPENCL);
    }
}

TEST_F(CompileRequest, TheExtensionsOfTwoValuesAreOneText) {
    Fake_plugin split = gles_plugin("310", "GL_EXT_tessellation_shader");
    split.pair("openglessl_extensions", "GL_EXT_geometry_shader");
    One_plugin plugin(split);
    expect_passed(plugin, Request("geometry"));
    expect_passed(plugin, Request("tessellation_control"));
}

TEST_F(CompileRequest, EveryTypeOnOpenCl) {
    // The version makes no difference.
    for (const char* const version : {"0", "100", "200", "310", "320"}) {
        One_plugin plugin(opencl_plugin(version, "GL_EXT_geometry_shader"), "opencl");
        for (const std::string type : TYPES) {
            const std::string error = type == "kernel" ? "" : only_gles(type);
            expect(plugin, Request(type.c_str()).kernels({"k"}), error);
            expect(plugin, Request(type.c_str()), type == "kernel" ? KERNEL_NAME : error);
        }
    }
}

TEST_F(CompileRequest, OtherTypesAreUnknown) {
    One_plugin gles(gles_plugin());
    const std::string long_text(100000, 'x');
    const std::vector<const char*> types = {"",          "Fragment",     "FRAGMENT",
                                            "fragment ", " fragment",    "frag",
                                            "fragments", "tessellation", "tessellation_contro",
                                            "Kernel",    "geometry\n",   "pixel",
                                            "\xff\x80",  "%s%n",         long_text.c_str()};
    for (const char* const type : types)
        expect(gles, Request(type), unknown_type(type));
}

TEST_F(CompileRequest, OtherTypesAreUnknownToOpenClToo) {
    One_plugin opencl(opencl_plugin(), "opencl");
    for (const char* const type : {"", "Kernel", "kernel ", "kernels", "Fragment"})
        expect(opencl, Request(type).kernels({"k"}), unknown_type(type));
}

TEST_F(CompileRequest, NullInputsAreTold) {
    One_plugin plugin(gles_plugin());
    bool result = true;
    EXPECT_EQ(stderr_of([&] { result = Request().compile(nullptr, 0); }), NULL_INPUTS);
    EXPECT_FALSE(result);
    EXPECT_EQ(plugin.take_calls(), "");
    expect_refused(plugin, Request().of(nullptr), NULL_INPUTS);
    expect_refused(plugin, Request(nullptr), NULL_INPUTS);
    expect_refused(plugin, Request(nullptr).of(nullptr), NULL_INPUTS);
}

TEST_F(CompileRequest, OpenGlEsTakesNoNamesForThreeTypes) {
    One_plugin plugin(gles_plugin());
    for (const char* const type : {"fragment", "vertex", "compute"}) {
        for (const int count : {1, 2, -1, INT_MAX, INT_MIN})
            expect(plugin, Request(type).num_kernels(count), SHADER_NAME);
        expect(plugin, Request(type).kernels({"k"}), SHADER_NAME);
        // Names that are not counted do not exist.
        expect(plugin, Request(type).kernels({"k"}).num_kernels(0), "");
    }
}

TEST_F(CompileRequest, GeometryAndTessellationIgnoreKernelNames) {
    One_plugin plugin(gles_plugin("310", "GL_EXT_geometry_shader GL_EXT_tessellation_shader"));
    for (const std::string type : {"geometry", "tessellation_control", "tessellation_evaluation"}) {
        for (const int count : {1, 2, -1, INT_MAX, INT_MIN}) {
            SCOPED_TRACE(type + " " + std::to_string(count));
            Outputs outputs;
            EXPECT_EQ(stderr_of([&] {
                          EXPECT_TRUE(outputs.compile(
                              Request(type.c_str()).kernels({"one", "two"}).num_kernels(count)));
                      }),
                      "");
            EXPECT_EQ(plugin.take_calls(),
                      compile_call({"shader_type", type, "compiler_type", "openglessl"},
                                   "void main() {}") +
                          "\nrelease_outputs\n");
        }
    }
}

TEST_F(CompileRequest, OpenClNeedsAKernelName) {
    One_plugin plugin(opencl_plugin(), "opencl");
    for (const int count : {0, -1, INT_MIN})
        expect(plugin, Request("kernel").kernels({"k"}).num_kernels(count), KERNEL_NAME);
    expect(plugin, Request("kernel").kernels({"k"}), "");
}

TEST_F(CompileRequest, PrerotateHasToBeSupported) {
    One_plugin gles(gles_plugin("310", "GL_EXT_geometry_shader GL_EXT_tessellation_shader"));
    for (const char* const type : TYPES)
        if (std::string_view(type) != "kernel")
            expect(gles, Request(type).rotated(), PREROTATE);
}

TEST_F(CompileRequest, PrerotateHasToBeSupportedByOpenClToo) {
    One_plugin opencl(opencl_plugin(), "opencl");
    expect(opencl, Request("kernel").kernels({"k"}).rotated(), PREROTATE);
}

TEST_F(CompileRequest, PrerotatePassesWhereItIsSupported) {
    Fake_plugin rotating = gles_plugin("310", "GL_EXT_geometry_shader GL_EXT_tessellation_shader");
    One_plugin gles(rotating.pair("prerotate", "true"));
    for (const char* const type : TYPES) {
        const char* const error = std::string_view(type) == "kernel" ? ONLY_OPENCL.c_str() : "";
        expect(gles, Request(type).rotated(), error);
        expect(gles, Request(type).rotated(false), error);
    }
}

TEST_F(CompileRequest, BinaryOutputIsLeftToThePlugin) {
    for (const std::uint32_t supported : {0u, 1u}) {
        Fake_plugin binary = gles_plugin();
        One_plugin plugin(binary.binary_output(supported));
        expect(plugin, Request().binary(), "");
        expect(plugin, Request().binary(false), "");
    }
}

TEST_F(CompileRequest, OfSeveralFaultsTheFirstIsTold) {
    struct Row {
        Request request;
        std::string error;
    };
    const auto request = [](const char* type) { return Request(type).num_kernels(1).rotated(); };
    {
        One_plugin plugin(gles_plugin("300"));
        bool result = true;
        EXPECT_EQ(stderr_of([&] { result = request("none").of(nullptr).compile(nullptr, 0); }),
                  NULL_INPUTS);
        EXPECT_FALSE(result);
        const Row rows[] = {
            {request("none").of(nullptr), NULL_INPUTS},
            {request("none"), unknown_type("none")},
            {request("kernel").num_kernels(0), ONLY_OPENCL},
            {request("kernel"), ONLY_OPENCL},
            {request("compute"), COMPUTE_31},
            {request("geometry"), GEOMETRY_31},
            {request("tessellation_control"), TESSELLATION_31},
            {request("tessellation_evaluation"), TESSELLATION_31},
            {request("fragment"), SHADER_NAME},
            {request("vertex"), SHADER_NAME},
            {request("vertex").num_kernels(0), PREROTATE},
        };
        for (const Row& row : rows)
            expect(plugin, row.request, row.error);
    }
    {
        One_plugin plugin(gles_plugin("310"));
        const Row rows[] = {
            {request("compute"), SHADER_NAME},
            {request("compute").num_kernels(0), PREROTATE},
            {request("geometry"), GEOMETRY},
            {request("tessellation_control"), TESSELLATION},
            {request("tessellation_evaluation"), TESSELLATION},
        };
        for (const Row& row : rows)
            expect(plugin, row.request, row.error);
    }
    One_plugin plugin(opencl_plugin(), "opencl");
    const Row rows[] = {
        {request("none"), unknown_type("none")},
        {request("fragment").num_kernels(0), only_gles("fragment")},
        {request("geometry"), only_gles("geometry")},
        {request("kernel").num_kernels(0), KERNEL_NAME},
        {request("kernel").kernels({"k"}), PREROTATE},
    };
    for (const Row& row : rows)
        expect(plugin, row.request, row.error);
}

TEST_F(CompileRequest, ARefusedRequestDoesNotSpoilTheNext) {
    One_plugin plugin(gles_plugin());
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] {
                  EXPECT_FALSE(outputs.compile(Request("none")));
                  EXPECT_TRUE(outputs.compile(Request()));
                  EXPECT_FALSE(outputs.compile(Request("kernel")));
                  EXPECT_TRUE(outputs.compile(Request("vertex")));
              }),
              unknown_type("none") + ONLY_OPENCL);
    EXPECT_EQ(
        lines_of(plugin.take_calls(), "compile "),
        compile_call({"shader_type", "fragment", "compiler_type", "openglessl"}, "void main() {}") +
            "\n" +
            compile_call({"shader_type", "vertex", "compiler_type", "openglessl"},
                         "void main() {}") +
            "\n");
}

} // namespace
