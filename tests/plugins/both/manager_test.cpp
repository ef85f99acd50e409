// SPDX-License-Identifier: MIT
// The manager with both real plug-ins in its directory.
#include "captured_stderr.hpp"
#include "open_plugin.hpp"
#include "process.hpp"
#include "spirv.hpp"

#include <vexacm.h>

#include <gtest/gtest.h>

namespace {

// As the catalogue numbers them.
constexpr unsigned int KERNELS_K580 = 0;
constexpr unsigned int SHADERS_K580 = 8;
constexpr unsigned int SHADERS_K300 = 15;

class Manager : public testing::Test {
protected:
    Manager() {
        EXPECT_EQ(stderr_of([] { EXPECT_TRUE(vexacm_initialize_libraries(PLUGIN_DIRECTORY)); }),
                  "");
    }
    ~Manager() override { vexacm_release_libraries(); }
};

Compiled compile(unsigned int compiler, const char* type, const char* source,
                 const std::vector<const char*>& kernels = {}) {
    vexaoc_outputs outputs = {};
    bool carried_out = false;
    EXPECT_EQ(stderr_of([&] {
                  carried_out = vexacm_compile(&outputs, source, type, kernels.data(),
                                               static_cast<int>(kernels.size()), true, false,
                                               nullptr, 0, compiler);
              }),
              "");
    Compiled compiled(carried_out ? VEXAOC_SUCCESS : -1, outputs);
    vexacm_release_compiler_outputs(&outputs);
    return compiled;
}

std::string extensions(unsigned int compiler) {
    std::string text;
    EXPECT_EQ(stderr_of([&] { text = vexacm_get_extensions(compiler); }), "");
    return text;
}

const char* const GLES_EXTENSIONS =
    "GL_OES_gpu_shader5 GL_OES_texture_buffer GL_OES_texture_cube_map_array "
    "GL_ANDROID_extension_pack_es31a GL_EXT_color_buffer_half_float GL_EXT_color_buffer_float "
    "GL_KHR_blend_equation_advanced GL_OES_sample_variables GL_OES_shader_image_atomic "
    "GL_OES_shader_multisample_interpolation GL_OES_texture_storage_multisample_2d_array "
    "GL_EXT_geometry_shader GL_EXT_gpu_shader5 GL_EXT_primitive_bounding_box "
    "GL_EXT_shader_io_blocks GL_EXT_tessellation_shader GL_EXT_texture_buffer "
    "GL_EXT_texture_cube_map_array ";

TEST_F(Manager, ProbingFindsTheExtensionsOfEach) {
    EXPECT_EQ(extensions(KERNELS_K580),
              "cl_khr_global_int32_base_atomics cl_khr_global_int32_extended_atomics "
              "cl_khr_local_int32_base_atomics cl_khr_local_int32_extended_atomics "
              "cl_khr_byte_addressable_store cl_khr_3d_image_writes cl_khr_fp64 "
              "cl_khr_int64_base_atomics cl_khr_int64_extended_atomics cl_khr_fp16 ");
    EXPECT_EQ(extensions(SHADERS_K580), GLES_EXTENSIONS);
    EXPECT_EQ(extensions(SHADERS_K300), GLES_EXTENSIONS);
}

TEST_F(Manager, KernelsCompile) {
    const Compiled compiled = compile(KERNELS_K580, "kernel",
                                      "int unused(void) {}\n"
                                      "kernel void empty() {}\n"
                                      "kernel void add(global long* p, long i) { p[0] += i; }",
                                      {"add", "empty"});
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    EXPECT_EQ(compiled.errors, Texts{});
    EXPECT_EQ(compiled.warnings, Texts{"1:19: warning: non-void function does not return a value"});
    const Table expected = {
        {"kernel", "arguments", "local bytes", "private bytes", "arithmetic", "memory", "control",
         "calls"},
        {"empty", "0", "0", "0", "0", "0", "1", "0"},
        {"add", "2", "0", "16", "1", "6", "1", "0"},
    };
    EXPECT_EQ(compiled.table, expected);
#ifdef SPIRV_VAL
    expect_valid(compiled.binary, "opencl2.2");
#endif
}

TEST_F(Manager, ShadersCompile) {
    const Compiled compiled = compile(SHADERS_K580, "vertex",
                                      "#version 310 es\n"
                                      "#extension GL_OES_texture_3D : enable\n"
                                      "uniform mat4 matrix;\n"
                                      "layout(location = 0) in vec4 position;\n"
                                      "void main() { gl_Position = matrix * position; }\n");
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    EXPECT_EQ(compiled.errors, Texts{});
    EXPECT_EQ(compiled.warnings, Texts{"WARNING: 0:2: '#extension' : extension not supported in "
                                       "version 310: GL_OES_texture_3D"});
    const Table expected = {{"statistic", "count"},
                            {"inputs", "1"},
                            {"outputs", "0"},
                            {"uniforms", "1"},
                            {"uniform blocks", "0"},
                            {"storage blocks", "0"},
                            {"samplers", "0"},
                            {"images", "0"},
                            {"SPIR-V instructions", "51"},
                            {"arithmetic instructions", "1"},
                            {"texture instructions", "0"},
                            {"image instructions", "0"},
                            {"load and store instructions", "3"},
                            {"branch instructions", "0"},
                            {"function calls", "0"}};
    EXPECT_EQ(compiled.table, expected);
#ifdef SPIRV_VAL
    expect_valid(compiled.binary, "opengl4.5");
#endif
}

TEST_F(Manager, OutputsAreThePluginsOwn) {
    const char* const kernel = "kernel void k(global float* p) { p[0] = sin(p[1]); }";
    const char* const shader = "void main() { gl_FragColor = vec4(gl_FragCoord.x); }";
    const Compiled kernel_compiled = compile(KERNELS_K580, "kernel", kernel, {"k"});
    const Compiled shader_compiled = compile(SHADERS_K580, "fragment", shader);
    const Compiled kernel_expected =
        compile(Open_plugin(OPENCL_PLUGIN_FILE), Request(kernel, "kernel"));
    const Compiled shader_expected =
        compile(Open_plugin(GLSL_PLUGIN_FILE), Request(shader, "fragment"));
    EXPECT_EQ(kernel_compiled.binary, kernel_expected.binary);
    EXPECT_EQ(kernel_compiled.table, kernel_expected.table);
    EXPECT_EQ(shader_compiled.binary, shader_expected.binary);
    EXPECT_EQ(shader_compiled.table, shader_expected.table);
}

TEST_F(Manager, ErrorsAreThoseOfEach) {
    const Compiled kernel = compile(KERNELS_K580, "kernel", "kernel void k() { x; }", {"k"});
    EXPECT_EQ(kernel.result, VEXAOC_SUCCESS);
    EXPECT_EQ(kernel.errors, Texts{"1:19: error: use of undeclared identifier 'x'"});
    EXPECT_EQ(kernel.warnings, Texts{});
    EXPECT_EQ(kernel.binary.size(), 0U);
    EXPECT_EQ(kernel.table, Table{});
    const Compiled shader = compile(SHADERS_K580, "fragment", "void main() { x; }");
    EXPECT_EQ(shader.result, VEXAOC_SUCCESS);
    EXPECT_EQ(shader.errors, Texts{"ERROR: 0:1: 'x' : undeclared identifier"});
    EXPECT_EQ(shader.warnings, Texts{});
    EXPECT_EQ(shader.binary.size(), 0U);
    EXPECT_EQ(shader.table, Table{});
}

TEST_F(Manager, NamedKernelThatIsNoneIsAnError) {
    const Compiled compiled = compile(KERNELS_K580, "kernel", "kernel void a() {}", {"a", "b"});
    EXPECT_EQ(compiled.errors, Texts{"error: no kernel named 'b'"});
}

// Asks for the compiler's extensions first, which are found by probing.
TEST_F(Manager, GeometryShaderCompiles) {
    const Compiled compiled = compile(SHADERS_K300, "geometry",
                                      "#version 310 es\n"
                                      "#extension GL_EXT_geometry_shader : require\n"
                                      "layout(points) in;\n"
                                      "layout(points, max_vertices = 1) out;\n"
                                      "void main() { gl_Position = vec4(0.0); EmitVertex(); }\n");
    EXPECT_EQ(compiled.errors, Texts{});
    EXPECT_FALSE(compiled.binary.empty());
}

#ifdef VEXACM_TOOL
TEST(Tool, ListsKernelsBeforeShaders) {
    const Process_result result = run({VEXACM_TOOL, "--plugins", PLUGIN_DIRECTORY, "list"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(
        result.out,
        "ID  driver                 core       revision     API         version  binary  "
        "prerotate\n"
        "0   Vexa-K300_r1p0-00rel0  Vexa-K580  r0p0_00rel0  opencl      300      yes     no\n"
        "1   Vexa-K300_r1p0-00rel0  Vexa-K560  r0p0_00rel0  opencl      300      yes     no\n"
        "2   Vexa-K300_r1p0-00rel0  Vexa-K530  r0p0_00rel0  opencl      300      yes     no\n"
        "3   Vexa-K300_r1p0-00rel0  Vexa-K520  r0p0_00rel0  opencl      300      yes     no\n"
        "4   Vexa-K300_r1p0-00rel0  Vexa-K460  r0p0_00rel0  opencl      300      yes     no\n"
        "5   Vexa-K300_r1p0-00rel0  Vexa-K420  r0p0_00rel0  opencl      300      yes     no\n"
        "6   Vexa-K300_r1p0-00rel0  Vexa-K320  r0p0_00rel0  opencl      300      yes     no\n"
        "7   Vexa-K300_r1p0-00rel0  Vexa-K300  r0p0_00rel0  opencl      300      yes     no\n"
        "8   Vexa-K300_r1p0-00rel0  Vexa-K580  r0p0_00rel0  openglessl  320      yes     no\n"
        "9   Vexa-K300_r1p0-00rel0  Vexa-K560  r0p0_00rel0  openglessl  320      yes     no\n"
        "10  Vexa-K300_r1p0-00rel0  Vexa-K530  r0p0_00rel0  openglessl  320      yes     no\n"
        "11  Vexa-K300_r1p0-00rel0  Vexa-K520  r0p0_00rel0  openglessl  320      yes     no\n"
        "12  Vexa-K300_r1p0-00rel0  Vexa-K460  r0p0_00rel0  openglessl  320      yes     no\n"
        "13  Vexa-K300_r1p0-00rel0  Vexa-K420  r0p0_00rel0  openglessl  310      yes     no\n"
        "14  Vexa-K300_r1p0-00rel0  Vexa-K320  r0p0_00rel0  openglessl  310      yes     no\n"
        "15  Vexa-K300_r1p0-00rel0  Vexa-K300  r0p0_00rel0  openglessl  310      yes     no\n");
    EXPECT_EQ(result.err, "");
}
#endif

} // namespace
