// SPDX-License-Identifier: MIT
#include "extensions.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace glsl {
namespace {

struct Extension {
    std::string_view name;
    int first_version;
    int last_version;
};

// After the extensions' own texts. What is not listed is glslang's to judge.
//
// Extensions to version 100 end there where later versions have the feature in the language, or
// under another name: images of EGL are GL_OES_EGL_image_external_essl3 from 300 on. Extensions
// to 310 also hold in 320, which has most of them in the language, so that shaders which are
// written for both can name them.
//
// Not listed although one might look for it: GL_KHR_blend_equation_advanced, whose text asks for
// OpenGL ES 2.0 and no language version.
constexpr Extension EXTENSIONS[] = {
    {"GL_EXT_shader_texture_lod", 100, 100},
    {"GL_EXT_shadow_samplers", 100, 100},
    {"GL_OES_EGL_image_external", 100, 100},
    {"GL_OES_standard_derivatives", 100, 100},
    {"GL_OES_texture_3D", 100, 100},
    {"GL_EXT_frag_depth", 100, 100},

    {"GL_OES_EGL_image_external_essl3", 300, 320},
    // Their texts begin at 300, but glslang has their functions and variables from 310 on.
    {"GL_OES_sample_variables", 310, 320},
    {"GL_OES_shader_multisample_interpolation", 310, 320},

    {"GL_ANDROID_extension_pack_es31a", 310, 320},
    {"GL_EXT_geometry_point_size", 310, 320},
    {"GL_EXT_geometry_shader", 310, 320},
    {"GL_EXT_gpu_shader5", 310, 320},
    {"GL_EXT_primitive_bounding_box", 310, 320},
    {"GL_EXT_shader_io_blocks", 310, 320},
    {"GL_EXT_tessellation_point_size", 310, 320},
    {"GL_EXT_tessellation_shader", 310, 320},
    {"GL_EXT_texture_buffer", 310, 320},
    {"GL_EXT_texture_cube_map_array", 310, 320},
    {"GL_OES_geometry_point_size", 310, 320},
    {"GL_OES_geometry_shader", 310, 320},
    {"GL_OES_gpu_shader5", 310, 320},
    {"GL_OES_primitive_bounding_box", 310, 320},
    {"GL_OES_shader_image_atomic", 310, 320},
    {"GL_OES_shader_io_blocks", 310, 320},
    {"GL_OES_tessellation_point_size", 310, 320},
    {"GL_OES_tessellation_shader", 310, 320},
    {"GL_OES_texture_buffer", 310, 320},
    {"GL_OES_texture_cube_map_array", 310, 320},
    {"GL_OES_texture_storage_multisample_2d_array", 310, 320},
};

bool version_has(int version, std::string_view name) {
    const auto* const known =
        std::find_if(std::begin(EXTENSIONS), std::end(EXTENSIONS),
                     [=](const Extension& extension) { return extension.name == name; });
    return known == std::end(EXTENSIONS) ||
           (version >= known->first_version && version <= known->last_version);
}

} // namespace

void check_extensions(const Expanded_source& source, int version, plugin::Outputs& outputs) {
    for (const Extension_directive& directive : source.extensions) {
        if (directive.behavior == "disable" || version_has(version, directive.name))
            continue;
        const std::string message = directive.place + ": '#extension' : extension not supported" +
                                    " in version " + std::to_string(version) + ": " +
                                    directive.name;
        if (directive.behavior == "require")
            outputs.errors.push_back("ERROR: " + message);
        else
            outputs.warnings.push_back("WARNING: " + message);
    }
}

} // namespace glsl
