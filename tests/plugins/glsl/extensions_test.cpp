// SPDX-License-Identifier: MIT
#include "plugin_test.hpp"

#include <gtest/gtest.h>

#include <set>

namespace {

// The names that the manager looks for where a plug-in reports none.
const char* const PROBED[] = {
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

const std::set<std::string> IN_100 = {
    "GL_EXT_shader_texture_lod", "GL_EXT_shadow_samplers", "GL_KHR_blend_equation_advanced",
    "GL_OES_EGL_image_external", "GL_OES_texture_3D",      "GL_OES_standard_derivatives",
};

const std::set<std::string> IN_300 = {"GL_KHR_blend_equation_advanced"};

const std::set<std::string> IN_310_AND_320 = {
    "GL_ANDROID_extension_pack_es31a",
    "GL_EXT_geometry_shader",
    "GL_EXT_gpu_shader5",
    "GL_EXT_primitive_bounding_box",
    "GL_EXT_shader_io_blocks",
    "GL_EXT_tessellation_shader",
    "GL_EXT_texture_buffer",
    "GL_EXT_texture_cube_map_array",
    "GL_KHR_blend_equation_advanced",
    "GL_OES_gpu_shader5",
    "GL_OES_sample_variables",
    "GL_OES_shader_image_atomic",
    "GL_OES_shader_multisample_interpolation",
    "GL_OES_texture_buffer",
    "GL_OES_texture_cube_map_array",
    "GL_OES_texture_storage_multisample_2d_array",
};

std::set<std::string> accepted(const std::string& version_line) {
    const Open_plugin plugin;
    std::set<std::string> names;
    for (const std::string name : PROBED) {
        const Compiled compiled = compile(
            plugin, Request(version_line + "#extension " + name + " : require\n void main() {}",
                            "fragment"));
        if (compiled.result == VEXAOC_SUCCESS && compiled.errors.empty())
            names.insert(name);
    }
    return names;
}

Compiled compile_after(const std::string& start) {
    return compile(Request(start + "\nvoid main() {}"));
}

TEST(Extensions, ProbesFindThoseOfTheVersion) {
    EXPECT_EQ(accepted(""), IN_100);
    EXPECT_EQ(accepted("#version 100\n"), IN_100);
    EXPECT_EQ(accepted("#version 300 es\n"), IN_300);
    EXPECT_EQ(accepted("#version 310 es\n"), IN_310_AND_320);
    EXPECT_EQ(accepted("#version 320 es\n"), IN_310_AND_320);
}

TEST(Extensions, RequiredInTheWrongVersionIsAnError) {
    const Compiled compiled = compile_after("\n#extension GL_EXT_geometry_shader : require");
    EXPECT_EQ(compiled.errors, Texts{"ERROR: 0:2: '#extension' : extension not supported in "
                                     "version 100: GL_EXT_geometry_shader"});
    EXPECT_TRUE(compiled.binary.empty());
}

TEST(Extensions, EnabledInTheWrongVersionIsAWarning) {
    const Compiled compiled =
        compile_after("#version 300 es\n#extension GL_OES_standard_derivatives : enable");
    EXPECT_EQ(compiled.errors, Texts{});
    EXPECT_EQ(compiled.warnings, Texts{"WARNING: 0:2: '#extension' : extension not supported in "
                                       "version 300: GL_OES_standard_derivatives"});
    EXPECT_FALSE(compiled.binary.empty());
}

TEST(Extensions, DisabledIsNoMatter) {
    const Compiled compiled = compile_after("#extension GL_EXT_geometry_shader : disable");
    EXPECT_EQ(compiled.errors, Texts{});
    EXPECT_EQ(compiled.warnings, Texts{});
}

TEST(Extensions, UnknownOneIsGlslangsToReport) {
    EXPECT_EQ(compile_after("#extension GL_NOBODY_nothing : require").errors,
              Texts{"ERROR: 0:1: '#extension' : extension not supported: GL_NOBODY_nothing"});
    EXPECT_EQ(compile_after("#extension GL_NOBODY_nothing : enable").warnings,
              Texts{"WARNING: 0:1: '#extension' : extension not supported: GL_NOBODY_nothing"});
}

TEST(Extensions, DirectiveLeftOutByTheSourceDoesNotCount) {
    const std::string version = "#version 310 es\n";
    const std::string directive = "#extension GL_OES_texture_3D : require\n";
    ASSERT_NE(compile_after(version + directive).errors, Texts{});
    EXPECT_EQ(compile_after(version + "#if 0\n" + directive + "#endif").errors, Texts{});
    EXPECT_EQ(compile_after(version + "/*\n" + directive + "*/").errors, Texts{});
    EXPECT_EQ(compile_after(version + "// \\\n" + directive).errors, Texts{});
    EXPECT_EQ(compile_after(version + "#if __VERSION__ < 300\n" + directive + "#endif").errors,
              Texts{});
}

TEST(Extensions, DirectiveInOddWritingCounts) {
    const Texts expected = {
        "ERROR: 0:4: '#extension' : extension not supported in version 310: GL_OES_texture_3D"};
    const std::string version = "#version 310 es\n";
    EXPECT_EQ(compile_after(version + "/*\n*/\n  #  extension/**/GL_OES_texture_3D:require").errors,
              expected);
    EXPECT_EQ(compile_after(version + "\n\n#exten\\\nsion GL_OES_texture_3D : require").errors,
              expected);
    EXPECT_EQ(compile_after(version + "#line 4\n#extension GL_OES_texture_3D : require").errors,
              expected);
    EXPECT_EQ(compile_after(version + "#if defined(GL_ES) && __VERSION__ == 310\n\n"
                                      "#extension GL_OES_texture_3D : require\n#endif")
                  .errors,
              expected);
}

TEST(Extensions, LineDirectiveMayNameTheString) {
    EXPECT_EQ(compile_after("#line 7 3\n#extension GL_EXT_geometry_shader : require").errors,
              Texts{"ERROR: 3:7: '#extension' : extension not supported in version 100: "
                    "GL_EXT_geometry_shader"});
}

TEST(Extensions, AcceptedOnesWork) {
    const char* const source = "#version 310 es\n"
                               "#extension GL_OES_sample_variables : require\n"
                               "#extension GL_OES_shader_multisample_interpolation : require\n"
                               "precision highp float;\n"
                               "layout(location = 0) sample in vec4 a;\n"
                               "layout(location = 0) out vec4 c;\n"
                               "void main() { c = interpolateAtSample(a, gl_SampleID); }\n";
    EXPECT_EQ(compile(Request(source)).errors, Texts{});
}

} // namespace
