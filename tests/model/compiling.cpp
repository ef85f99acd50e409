// SPDX-License-Identifier: MIT
#include "compiling.hpp"

#include <algorithm>

namespace model {

namespace {

const std::string ERROR = "Compiler Manager Error: ";

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// What is wrong with an extension that a kind of shader needs; empty: nothing.
std::string missing_extension(Catalogue& catalogue, Entry& entry, const std::string& extension,
                              const std::string& kind, Seen& seen) {
    if (entry.highest_version < 310)
        return "Compiler must support OpenGL ES 3.1 and extension " + extension + " to use " +
               kind + " shaders.";
    if (!contains(extensions(catalogue, entry, seen), extension))
        return "Compiler must support extension " + extension + " to use " + kind + " shaders.";
    return "";
}

std::string wrong_for_opengl_es(Catalogue& catalogue, Entry& entry, const Compile& request,
                                Seen& seen) {
    const std::string& type = *request.shader_type;
    if (type == "kernel")
        return "Only OpenCL compilers can compile kernels.";
    if (type == "compute" && entry.highest_version < 310)
        return "Compiler must support OpenGL ES 3.1 to use compute shaders.";
    if (type == "geometry")
        return missing_extension(catalogue, entry, "GL_EXT_geometry_shader", "geometry", seen);
    if (type == "tessellation_control" || type == "tessellation_evaluation")
        return missing_extension(catalogue, entry, "GL_EXT_tessellation_shader", "tessellation",
                                 seen);
    if (request.num_kernel_names != 0)
        return "Cannot specify a shader name when compiling using an OpenGL ES compiler.";
    return "";
}

std::string wrong_for_opencl(const Compile& request) {
    if (*request.shader_type != "kernel")
        return "Shader type " + *request.shader_type +
               " can only be compiled using an OpenGL ES compiler.";
    if (request.num_kernel_names <= 0)
        return "Must specify at least one kernel name when compiling using an OpenCL compiler.";
    return "";
}

/// What is wrong with a request; empty: nothing.
std::string complaint(Catalogue& catalogue, Entry& entry, const Compile& request, Seen& seen) {
    if (request.null_outputs || !request.source || !request.shader_type)
        return "NULL inputs passed to compile function.";
    bool known = false;
    for (const char* const type : {"fragment", "vertex", "compute", "geometry",
                                   "tessellation_control", "tessellation_evaluation", "kernel"})
        known = known || *request.shader_type == type;
    if (!known)
        return "Unknown shader type: " + *request.shader_type + ".";
    const std::string wrong = entry.api_name == "openglessl"
                                  ? wrong_for_opengl_es(catalogue, entry, request, seen)
                                  : wrong_for_opencl(request);
    if (!wrong.empty())
        return wrong;
    return request.prerotate && !entry.prerotate ? "Compiler does not support prerotate." : "";
}

std::vector<std::string> options(const Entry& entry, const Compile& request) {
    std::vector<std::string> options = {"shader_type", *request.shader_type};
    if (*request.shader_type == "kernel")
        for (int i = 0; i < request.num_kernel_names; ++i) {
            options.push_back("kernel_name");
            options.push_back(request.kernel_names[static_cast<std::size_t>(i)]);
        }
    if (entry.prerotate) {
        options.push_back("prerotate");
        options.push_back(request.prerotate ? "true" : "false");
    }
    options.push_back("compiler_type");
    options.push_back(entry.api_name);
    for (int i = 0; i < request.num_defines; ++i) {
        options.push_back("define");
        options.push_back(request.defines[static_cast<std::size_t>(i)]);
    }
    return options;
}

/// A copy keeps null texts, each with a complaint.
std::vector<Text> copy(const Array<Text>& texts, Seen& seen) {
    const std::vector<Text> copied = texts.seen();
    for (const Text& text : copied)
        if (!text)
            seen.say(ERROR + "NULL inputs to string_copy.");
    return copied;
}

Outputs copy(const Outcome& outcome, Seen& seen) {
    Outputs outputs;
    for (const Array<Text>& list : outcome.lists.seen())
        outputs.lists.push_back(copy(list, seen));
    const std::vector<char> binary = outcome.binary.seen();
    outputs.binary.assign(binary.begin(), binary.end());
    outputs.a = copy(outcome.a, seen);
    outputs.b = copy(outcome.b, seen);
    return outputs;
}

void report_failure(int result, Seen& seen) {
    if (result == 1)
        seen.say(ERROR + "Core not supported.");
    if (result == 2)
        seen.say(ERROR + "Invalid Parameters.");
    if (result == 3)
        seen.say(ERROR + "Binary output not supported.");
    if (result == 4)
        seen.say(ERROR + "Compiler memory error.");
}

std::string probe_opengl_es(Catalogue& catalogue, Entry& entry, Seen& seen) {
    std::string found;
    for (const std::string name : {"GL_QRX_shader_framebuffer_fetch",
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
                                   "GL_EXT_texture_cube_map_array"}) {
        Compile request;
        request.source = "#version " + std::to_string(entry.highest_version) +
                         (entry.highest_version == 100 ? "" : " es") + "\n#extension " + name +
                         " : require\n void main() {}";
        request.shader_type = "fragment";
        const Compiled compiled = compile(catalogue, entry, request, seen);
        if (!compiled.done || !compiled.outputs.a.empty())
            continue;
        found += name + " ";
        if (name == "GL_ANDROID_extension_pack_es31a")
            found += "GL_EXT_color_buffer_half_float GL_EXT_color_buffer_float ";
    }
    return found;
}

std::string probe_opencl(Catalogue& catalogue, Entry& entry, Seen& seen) {
    const std::vector<std::string> names = {"cl_khr_global_int32_base_atomics",
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
                                            "cl_qrx_import_memory"};
    Compile request;
    request.source = "";
    for (const std::string& name : names)
        *request.source += "\n#ifdef " + name + "\n#error " + name + "\n#endif";
    *request.source += "\n kernel void k(){}";
    request.shader_type = "kernel";
    request.kernel_names = {"k"};
    request.num_kernel_names = 1;
    const Compiled compiled = compile(catalogue, entry, request, seen);

    std::string found;
    for (const Text& diagnostic : compiled.outputs.a)
        for (const std::string& name : names)
            if (contains(diagnostic.value_or(""), name))
                found += name + " ";
    return found;
}

} // namespace

Compiled compile(Catalogue& catalogue, Entry& entry, const Compile& request, Seen& seen) {
    const std::string wrong = complaint(catalogue, entry, request, seen);
    if (!wrong.empty()) {
        seen.say(ERROR + wrong);
        return {};
    }
    const Steered& plugin = *catalogue.libraries[entry.library].plugin;
    const Outcome outcome =
        plugin.compile({*request.source, options(entry, request), entry.reported_core_name,
                        entry.core_revision, request.binary_output},
                       seen);
    Compiled compiled;
    compiled.done = outcome.result == 0;
    if (compiled.done)
        compiled.outputs = copy(outcome, seen);
    report_failure(outcome.result, seen);
    plugin.release_outputs(seen);
    return compiled;
}

std::string extensions(Catalogue& catalogue, Entry& entry, Seen& seen) {
    if (!entry.extensions_known) {
        entry.extensions_known = true;
        entry.extensions = entry.api_name == "openglessl" ? probe_opengl_es(catalogue, entry, seen)
                                                          : probe_opencl(catalogue, entry, seen);
    }
    return entry.extensions;
}

} // namespace model
