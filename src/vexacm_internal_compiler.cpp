// SPDX-License-Identifier: MIT
#include "vexacm_internal_compiler.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

#include "plugin_text.hpp"
#include "report.hpp"
#include "vexacm_vexaoc_library.hpp"

namespace VexaCM {

enum class Shader_type : unsigned char {
    FRAGMENT,
    VERTEX,
    COMPUTE,
    GEOMETRY,
    TESSELLATION_CONTROL,
    TESSELLATION_EVALUATION,
    KERNEL
};

namespace {

constexpr bool is_blank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

constexpr bool is_digit(char character) {
    return character >= '0' && character <= '9';
}

// Reads the number that a piece of at most six characters begins with: 0 when
// it begins with anything but a digit, a sign too; left alone when it is blank.
constexpr void read_number(std::string_view piece, std::uint32_t* number) {
    while (!piece.empty() && is_blank(piece.front()))
        piece.remove_prefix(1);
    if (piece.empty())
        return;
    *number = 0;
    for (; !piece.empty() && is_digit(piece.front()); piece.remove_prefix(1))
        *number = *number * 10 + static_cast<std::uint32_t>(piece.front() - '0');
}

// Skips at most `most` characters, up to and including the first delimiter.
constexpr void skip_past(char delimiter, std::size_t most, std::string_view* text) {
    for (; most > 0 && !text->empty(); --most) {
        const char skipped = text->front();
        text->remove_prefix(1);
        if (skipped == delimiter)
            return;
    }
}

// What lies before the first of either character; all where there is none.
constexpr std::string_view until(std::string_view text, char a, char b) {
    std::size_t size = 0;
    while (size < text.size() && text[size] != a && text[size] != b)
        ++size;
    return text.substr(0, size);
}

constexpr std::string_view line(std::string_view text, std::size_t most) {
    return until(text.substr(0, most), '\n', '\n');
}

constexpr void read_core_name(std::string_view core_display_name, std::uint32_t* core_number) {
    skip_past('-', 5, &core_display_name); // the length of "Vexa-"
    if (!core_display_name.empty() && core_display_name.front() == 'K')
        core_display_name.remove_prefix(1);
    read_number(line(core_display_name, 3), core_number);
}

constexpr std::uint32_t core_number(std::string_view core_display_name) {
    std::uint32_t number = 0;
    read_core_name(core_display_name, &number);
    return number;
}

// Vexa-K350, Vexa-K370 and Vexa-100 are not offered and have no row.
constexpr Core_name vexa_core_name_translator[] = {
    {"k30x", "Vexa-K300", 300}, {"k32x", "Vexa-K320", 320}, {"k42x", "Vexa-K420", 420},
    {"k46x", "Vexa-K460", 460}, {"k52x", "Vexa-K520", 520}, {"k53x", "Vexa-K530", 530},
    {"k56x", "Vexa-K560", 560}, {"k58x", "Vexa-K580", 580},
};

// Cores that stop at OpenGL ES 3.1, also when their driver reports 3.2.
constexpr std::string_view MAXIMUM_GLES_310_CORES[] = {"Vexa-K300", "Vexa-K320", "Vexa-K420"};

constexpr std::string_view default_openglessl_extensions[] = {
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

constexpr std::string_view default_opencl_extensions[] = {
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

// The place of a name is the value of its Shader_type.
constexpr std::string_view shader_type_names[] = {
    "fragment", "vertex", "compute", "geometry", "tessellation_control", "tessellation_evaluation",
    "kernel",
};

constexpr std::uint32_t GLES_31 = 310;
constexpr std::uint32_t GLES_32 = 320;

// The row of a short name; null where there is none.
const Core_name* find_core(std::string_view core_name) {
    // All short names have one length, so that a comparison is one instruction.
    constexpr std::size_t size = sizeof Core_name::short_name - 1;
    if (core_name.size() == size)
        for (const Core_name& core : vexa_core_name_translator)
            if (std::memcmp(core.short_name, core_name.data(), size) == 0)
                return &core;
    return nullptr;
}

// The row of a display name; null where there is none.
const Core_name* find_shown_core(std::string_view display_name) {
    for (const Core_name& core : vexa_core_name_translator)
        if (core.shown() == display_name)
            return &core;
    return nullptr;
}

// Tells a null filter, which has no data, from the empty one.
std::string_view filter_text(const char* filter) {
    return filter ? std::string_view(filter) : std::string_view();
}

std::uint32_t highest(const std::vector<std::uint32_t>& api_versions) {
    return api_versions.empty() ? 0 : *std::max_element(api_versions.begin(), api_versions.end());
}

std::uint32_t capped(std::string_view core_display_name, std::string_view api_name,
                     std::uint32_t highest_api_version) {
    const bool is_capped =
        highest_api_version == GLES_32 && api_name == "openglessl" &&
        std::find(std::begin(MAXIMUM_GLES_310_CORES), std::end(MAXIMUM_GLES_310_CORES),
                  core_display_name) != std::end(MAXIMUM_GLES_310_CORES);
    return is_capped ? GLES_31 : highest_api_version;
}

void read_core_revision(std::string_view core_revision, std::uint32_t* revision_numbers) {
    skip_past('r', 2, &core_revision);
    // Deliberate: one digit each. "r10p2" has major 1 and nothing more, and a
    // hyphen in place of the underscore ends the reading. Held by
    // CoreRevision.TakesOneDigitOfMajorAndMinor.
    for (const char delimiter : {'p', '_'}) {
        if (!core_revision.empty() && core_revision.front() != delimiter) {
            read_number(core_revision.substr(0, 1), revision_numbers);
            core_revision.remove_prefix(1);
        }
        if (core_revision.empty() || core_revision.front() != delimiter)
            return;
        core_revision.remove_prefix(1);
        ++revision_numbers;
    }

    const std::string_view build_and_tag = line(core_revision, 6);
    read_number(until(build_and_tag, 'd', 'r'), &revision_numbers[0]);
    // Deliberate: without a tag the release is the first character. Held by
    // CoreRevision.ReadsTheReleaseWithoutATagFromTheStart.
    const std::size_t tag_end = until(build_and_tag, 'v', 'l').size();
    const std::size_t release_at = tag_end < build_and_tag.size() ? tag_end + 1 : 0;
    read_number(build_and_tag.substr(release_at, 1), &revision_numbers[1]);
}

std::size_t not_negative(int count) {
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

// The flat list of options of one compile. Plug-ins get texts of their own,
// which they may write into and which end with the call.
class Option_list {
public:
    explicit Option_list(std::size_t count) : entries(count) {}

    void add(std::string_view key, const char* value) {
        entries[length++] = key.data();
        entries[length++] = value;
        size_of_texts += key.size() + 1 + std::strlen(value) + 1;
    }

    // Replaces the texts added so far, which are other people's, by copies.
    void copy_texts() {
        texts.reset(new char[size_of_texts]);
        char* next = texts.get();
        for (const char*& text : entries) {
            char* const copy = next;
            next = stpcpy(copy, text) + 1;
            text = copy;
        }
    }

    const char** data() { return entries.data(); }
    std::uint32_t size() const { return static_cast<std::uint32_t>(entries.size()); }

private:
    std::vector<const char*> entries;
    std::size_t length = 0;
    std::size_t size_of_texts = 0;
    std::unique_ptr<char[]> texts;
};

// Outputs of a test compile, released on every way out.
struct Probe_outputs {
    Probe_outputs() = default;
    Probe_outputs(const Probe_outputs&) = delete;
    Probe_outputs& operator=(const Probe_outputs&) = delete;
    ~Probe_outputs() { Vexacm_internal_compiler::release_compiler_outputs(&record); }

    vexaoc_outputs record = {};
};

template <class... Parts>
bool refuse(const Parts&... parts) {
    report_line("Compiler Manager Error: ", parts...);
    return false;
}

// Copies a list. The count is written once its zeroed array stands, so that a
// record left half-made by an exception can still be released.
void copy_strings(std::uint32_t* count, char*** strings, std::uint32_t source_count,
                  char* const* source) {
    *strings = new char*[source_count]();
    *count = source_count;
    for (std::uint32_t i = 0; i < source_count; ++i)
        Vexacm_internal_compiler::string_copy(const_cast<const char**>(&(*strings)[i]), source[i]);
}

void release_strings(std::uint32_t count, char** strings) {
    const std::uint32_t length = list_length(count, strings);
    for (std::uint32_t i = 0; i < length; ++i)
        delete[] strings[i];
    delete[] strings;
}

} // namespace

Vexacm_internal_compiler::Vexacm_internal_compiler(
    std::uint32_t library_version_major, std::uint32_t library_version_minor,
    std::uint32_t library_version_patch, std::int32_t flexible_version_major,
    std::int32_t flexible_version_minor, std::int32_t flexible_version_patch,
    std::string driver_name, std::string_view reported_core_name_, std::string_view core_revision_,
    std::string_view api_name, const std::vector<std::uint32_t>& api_versions,
    const std::string& extensions_, bool binary_output_supported, bool prerotate_supported,
    const std::shared_ptr<Vexacm_vexaoc_library>& library)
    : Vexacm_internal_compiler(
          std::shared_ptr<const Common>(
              new Common{library_version_major, library_version_minor, library_version_patch,
                         flexible_version_major, flexible_version_minor, flexible_version_patch,
                         std::move(driver_name), std::string(api_name), highest(api_versions),
                         extensions_, binary_output_supported, prerotate_supported, library}),
          reported_core_name_, core_revision_) {}

Vexacm_internal_compiler::Vexacm_internal_compiler(const std::shared_ptr<const Common>& common_,
                                                   std::string_view reported_core_name_,
                                                   std::string_view core_revision_)
    : common(common_), core(find_core(reported_core_name_)),
      highest_api_version(capped(core ? core->shown() : reported_core_name_, common->api_name,
                                 common->highest_api_version)),
      extensions_known(!common->extensions.empty()), reported_core_name(reported_core_name_),
      core_revision(core_revision_) {}

// --- Core identity and order ---

bool Vexacm_internal_compiler::parse_core_name(const std::string& core_display_name,
                                               std::uint32_t* core_number) {
    read_core_name(core_display_name, core_number);
    return true;
}

bool Vexacm_internal_compiler::parse_core_revision(const std::string& core_revision,
                                                   std::uint32_t* revision_numbers) {
    read_core_revision(core_revision, revision_numbers);
    return true;
}

Vexacm_internal_compiler::Order_key
Vexacm_internal_compiler::order_key(std::string_view core_name, std::string_view core_revision) {
    const Core_name* const core = find_core(core_name);
    std::uint32_t revision[4] = {};
    read_core_revision(core_revision, revision);
    // In one number, as they have three, one, one, six and one digits at most.
    Order_key key = core ? core->number : core_number(core_name);
    key = key * 10 + revision[0];
    key = key * 10 + revision[1];
    key = key * 1000000 + revision[2];
    return key * 10 + revision[3];
}

bool Vexacm_internal_compiler::before(const Vexacm_internal_compiler& a,
                                      const Vexacm_internal_compiler& b) {
    // Deliberate: equals come before each other, and a record before itself; a
    // sort has to make a strict order of it. Held by
    // CompilerOrder.EqualsComeBeforeEachOther.
    return order_key(a.get_core_name(), a.core_revision) >=
           order_key(b.get_core_name(), b.core_revision);
}

std::string Vexacm_internal_compiler::get_core_display_name(const std::string& core_name) {
    const Core_name* const core = find_core(core_name);
    return core ? core->display_name : core_name;
}

std::uint32_t Vexacm_internal_compiler::get_actual_highest_api_version(
    const std::string& core_display_name, const std::string& api_name,
    const std::vector<std::uint32_t>& api_versions) {
    return capped(core_display_name, api_name, highest(api_versions));
}

// --- Matching ---

Vexacm_internal_compiler::Filters::Filters(const char* driver_name_, const char* core_name_,
                                           const char* core_revision_, const char* api_name_,
                                           const char* binary_output,
                                           std::uint32_t minimum_api_version_)
    : driver_name(filter_text(driver_name_)), core_name(filter_text(core_name_)),
      core_revision(filter_text(core_revision_)), api_name(filter_text(api_name_)),
      core(find_shown_core(core_name)),
      with_binary_output(!binary_output || std::strcmp(binary_output, "true") == 0),
      without_binary_output(!binary_output || std::strcmp(binary_output, "false") == 0),
      minimum_api_version(minimum_api_version_) {}

// --- Compiling ---

bool Vexacm_internal_compiler::compile(vexaoc_outputs* outputs, const char* source,
                                       const char* shader_type, const char* const* kernel_names,
                                       int num_kernel_names, bool binary_output, bool prerotate,
                                       const char* const* defines, int num_defines) {
    if (!outputs)
        return refuse("NULL inputs passed to compile function.");
    std::memset(outputs, 0, sizeof *outputs);

    Shader_type type = {};
    if (!check_request(source, shader_type, num_kernel_names, prerotate, &type))
        return false;

    const std::size_t kernel_count =
        type == Shader_type::KERNEL ? not_negative(num_kernel_names) : 0;
    const std::size_t define_count = not_negative(num_defines);
    Option_list options(2 * define_count + 4 + 2 * kernel_count +
                        (common->prerotate_supported ? 2 : 0));
    options.add("shader_type", shader_type);
    for (std::size_t i = 0; i < kernel_count; ++i)
        options.add("kernel_name", kernel_names[i]);
    if (common->prerotate_supported)
        options.add("prerotate", prerotate ? "true" : "false");
    options.add("compiler_type", common->api_name.c_str());
    for (std::size_t i = 0; i < define_count; ++i)
        options.add("define", defines[i]);
    options.copy_texts();

    vexaoc_inputs inputs;
    std::memset(&inputs, 0, sizeof inputs);
    inputs.source = source;
    inputs.num_options = options.size();
    inputs.options = options.data();
    inputs.core_name = reported_core_name.c_str();
    inputs.core_revision = core_revision.c_str();
    inputs.binary_output = binary_output ? 1 : 0;
    return call_plugin(&inputs, outputs);
}

bool Vexacm_internal_compiler::check_request(const char* source, const char* shader_type,
                                             int num_kernel_names, bool prerotate,
                                             Shader_type* type) {
    if (!source || !shader_type)
        return refuse("NULL inputs passed to compile function.");

    const auto name =
        std::find(std::begin(shader_type_names), std::end(shader_type_names), shader_type);
    if (name == std::end(shader_type_names))
        return refuse("Unknown shader type: ", shader_type, ".");
    *type = static_cast<Shader_type>(name - std::begin(shader_type_names));

    if (common->api_name == "openglessl") {
        if (!check_gles_request(*type, num_kernel_names))
            return false;
    } else if (common->api_name == "opencl") {
        if (*type != Shader_type::KERNEL)
            return refuse("Shader type ", shader_type,
                          " can only be compiled using an OpenGL ES compiler.");
        if (num_kernel_names <= 0)
            return refuse(
                "Must specify at least one kernel name when compiling using an OpenCL compiler.");
    }

    if (prerotate && !common->prerotate_supported)
        return refuse("Compiler does not support prerotate.");
    return true;
}

bool Vexacm_internal_compiler::check_gles_request(Shader_type type, int num_kernel_names) {
    switch (type) {
    case Shader_type::KERNEL:
        return refuse("Only OpenCL compilers can compile kernels.");
    // Deliberate: geometry and tessellation requests may name kernels, which
    // are ignored. Held by CompileRequest.GeometryAndTessellationIgnoreKernelNames.
    case Shader_type::GEOMETRY:
        return check_gles_extension("GL_EXT_geometry_shader", "geometry");
    case Shader_type::TESSELLATION_CONTROL:
    case Shader_type::TESSELLATION_EVALUATION:
        return check_gles_extension("GL_EXT_tessellation_shader", "tessellation");
    case Shader_type::COMPUTE:
        if (highest_api_version < GLES_31)
            return refuse("Compiler must support OpenGL ES 3.1 to use compute shaders.");
        break;
    case Shader_type::FRAGMENT:
    case Shader_type::VERTEX:
        break;
    }
    if (num_kernel_names != 0)
        return refuse("Cannot specify a shader name when compiling using an OpenGL ES compiler.");
    return true;
}

bool Vexacm_internal_compiler::check_gles_extension(std::string_view extension,
                                                    std::string_view shaders) {
    if (highest_api_version < GLES_31)
        return refuse("Compiler must support OpenGL ES 3.1 and extension ", extension, " to use ",
                      shaders, " shaders.");
    if (std::string_view(get_extensions()).find(extension) == std::string_view::npos)
        return refuse("Compiler must support extension ", extension, " to use ", shaders,
                      " shaders.");
    return true;
}

bool Vexacm_internal_compiler::call_plugin(vexaoc_inputs* inputs, vexaoc_outputs* outputs) const {
    if (!common->library) {
        report_line("Library for this compiler is missing.");
        return false;
    }

    vexaoc_outputs plugin_outputs;
    std::memset(&plugin_outputs, 0, sizeof plugin_outputs);
    const int result = common->library->compile(inputs, &plugin_outputs);
    switch (result) {
    case VEXAOC_SUCCESS:
        copy_compiler_outputs(outputs, &plugin_outputs);
        break;
    case VEXAOC_CORE_NOT_SUPPORTED:
        refuse("Core not supported.");
        break;
    case VEXAOC_INVALID_PARAMETERS:
        refuse("Invalid Parameters.");
        break;
    case VEXAOC_BINARY_OUTPUT_NOT_SUPPORTED:
        refuse("Binary output not supported.");
        break;
    case VEXAOC_MEMORY_ERROR:
        refuse("Compiler memory error.");
        break;
    }
    // A plain call, no owner: when the copy runs out of memory, the outputs are
    // not handed back.
    common->library->release_compilation_result(&plugin_outputs);
    return result == VEXAOC_SUCCESS;
}

// --- Extensions ---

const char* Vexacm_internal_compiler::get_extensions() {
    if (!extensions_known) {
        // Set first: whatever the test compiles do, they are not tried again.
        extensions_known = true;
        extensions =
            common->api_name == "openglessl" ? probe_gles_extensions() : probe_opencl_extensions();
    }
    return common->extensions.empty() ? extensions.c_str() : common->extensions.c_str();
}

std::string Vexacm_internal_compiler::probe_gles_extensions() {
    char header[sizeof "#version 4294967295 es\n#extension "];
    std::snprintf(header, sizeof header, "#version %u%s\n#extension ", highest_api_version,
                  highest_api_version == 100 ? "" : " es");

    std::string found;
    for (std::string_view extension : default_openglessl_extensions) {
        std::string source = header;
        source.append(extension).append(" : require\n void main() {}");

        Probe_outputs outputs;
        if (!compile(&outputs.record, source.c_str(), "fragment", nullptr, 0, false, false, nullptr,
                     0) ||
            outputs.record.num_strings_a != 0)
            continue;
        found.append(extension).append(" ");
        // The pack brings these two along; they are never probed on their own.
        if (extension == "GL_ANDROID_extension_pack_es31a")
            found.append("GL_EXT_color_buffer_half_float GL_EXT_color_buffer_float ");
    }
    return found;
}

std::string Vexacm_internal_compiler::probe_opencl_extensions() {
    // Every extension that the compiler defines becomes an error that names it.
    std::string source;
    for (std::string_view extension : default_opencl_extensions)
        source.append("\n#ifdef ")
            .append(extension)
            .append("\n#error ")
            .append(extension)
            .append("\n#endif");
    source += "\n kernel void k(){}";

    Probe_outputs outputs;
    const char* const kernel_name = "k";
    compile(&outputs.record, source.c_str(), "kernel", &kernel_name, 1, false, false, nullptr, 0);

    std::string found;
    for (std::uint32_t i = 0; i < outputs.record.num_strings_a; ++i) {
        const std::string_view error = text_or_empty(outputs.record.strings_a[i]);
        for (std::string_view extension : default_opencl_extensions)
            if (error.find(extension) != std::string_view::npos)
                found.append(extension).append(" ");
    }
    return found;
}

// --- Outputs ---

void Vexacm_internal_compiler::string_copy(const char** destination, const char* source) {
    if (!destination || !source) {
        refuse("NULL inputs to string_copy.");
        return;
    }
    const std::size_t size = std::strlen(source) + 1;
    *destination = static_cast<const char*>(std::memcpy(new char[size], source, size));
}

void Vexacm_internal_compiler::copy_compiler_outputs(vexaoc_outputs* destination,
                                                     const vexaoc_outputs* source) {
    if (const auto count = list_length(source->num_string_lists, source->string_lists)) {
        destination->string_lists = new vexaoc_string_list[count]();
        destination->num_string_lists = count;
        for (std::uint32_t i = 0; i < count; ++i) {
            vexaoc_string_list& copy = destination->string_lists[i];
            const vexaoc_string_list& list = source->string_lists[i];
            copy_strings(&copy.num_strings, &copy.strings,
                         list_length(list.num_strings, list.strings), list.strings);
        }
    }
    if (const auto size = list_length(source->binary_size, source->binary)) {
        destination->binary = new std::uint8_t[size];
        destination->binary_size = size;
        std::memcpy(destination->binary, source->binary, size);
    }
    if (const auto count = list_length(source->num_strings_a, source->strings_a))
        copy_strings(&destination->num_strings_a, &destination->strings_a, count,
                     source->strings_a);
    if (const auto count = list_length(source->num_strings_b, source->strings_b))
        copy_strings(&destination->num_strings_b, &destination->strings_b, count,
                     source->strings_b);
}

// Deliberate: counts and pointers stay as they were, so that a record must be
// released only once. Held by OutputRelease.LeavesTheRecordAsItWas.
void Vexacm_internal_compiler::release_compiler_outputs(vexaoc_outputs* outputs) {
    const std::uint32_t list_count = list_length(outputs->num_string_lists, outputs->string_lists);
    for (std::uint32_t i = 0; i < list_count; ++i)
        release_strings(outputs->string_lists[i].num_strings, outputs->string_lists[i].strings);
    delete[] outputs->string_lists;
    if (outputs->binary_size != 0)
        delete[] outputs->binary;
    release_strings(outputs->num_strings_a, outputs->strings_a);
    release_strings(outputs->num_strings_b, outputs->strings_b);
}

} // namespace VexaCM
