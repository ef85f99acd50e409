// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vexaoc.h"

namespace VexaCM {

class Vexacm_vexaoc_library;
enum class Shader_type : unsigned char;

/// A core that callers see under another name than plug-ins report.
struct Core_name {
    char short_name[sizeof "k00x"];
    char display_name[sizeof "Vexa-K000"];
    std::uint32_t number; // as the display name gives it

    constexpr std::string_view shown() const { return {display_name, sizeof display_name - 1}; }
};

/// One compiler as callers see it: a plug-in for one core, one core revision
/// and one shading language.
class Vexacm_internal_compiler {
public:
    Vexacm_internal_compiler(
        std::uint32_t library_version_major, std::uint32_t library_version_minor,
        std::uint32_t library_version_patch, std::int32_t flexible_version_major,
        std::int32_t flexible_version_minor, std::int32_t flexible_version_patch,
        std::string driver_name, std::string_view reported_core_name,
        std::string_view core_revision, std::string_view api_name,
        const std::vector<std::uint32_t>& api_versions, const std::string& extensions,
        bool binary_output_supported, bool prerotate_supported,
        const std::shared_ptr<Vexacm_vexaoc_library>& library);

    /// Another compiler of the same plug-in and shading language.
    Vexacm_internal_compiler(const Vexacm_internal_compiler& sibling,
                             std::string_view reported_core_name_, std::string_view core_revision_)
        : Vexacm_internal_compiler(sibling.common, reported_core_name_, core_revision_) {}

    // The texts live as long as the record.
    const char* get_driver_name() const { return common->driver_name.c_str(); }
    const char* get_core_name() const { return shown_core_name().data(); }
    const char* get_core_revision() const { return core_revision.c_str(); }
    const char* get_api_name() const { return common->api_name.c_str(); }
    std::uint32_t get_highest_api_version() const { return highest_api_version; }
    bool is_binary_output_supported() const { return common->binary_output_supported; }
    bool is_prerotate_supported() const { return common->prerotate_supported; }

    /// The extension names, each with a blank behind it. Unless the plug-in
    /// reported them, the first call finds them out by test compiles.
    const char* get_extensions();

    /// What a query asks for, looked up and measured once; a null text asks for nothing.
    struct Filters {
        Filters(const char* driver_name, const char* core_name, const char* core_revision,
                const char* api_name, const char* binary_output, std::uint32_t minimum_api_version);

        std::string_view driver_name, core_name, core_revision, api_name;
        const Core_name* core; // of that display name; null where there is none
        bool with_binary_output, without_binary_output;
        std::uint32_t minimum_api_version;
    };

    /// Whether the record passes every filter.
    bool matches(const Filters& filters) const;
    bool matches(const char* driver_name_, const char* core_name_, const char* core_revision_,
                 const char* api_name_, const char* binary_output,
                 std::uint32_t minimum_api_version) const {
        return matches(Filters(driver_name_, core_name_, core_revision_, api_name_, binary_output,
                               minimum_api_version));
    }

    /// Checks a request, sends it to the plug-in, and copies what it returns
    /// into `outputs`, which is zeroed first. What goes wrong is reported, other
    /// than a plug-in's result outside 0 to 4.
    bool compile(vexaoc_outputs* outputs, const char* source, const char* shader_type,
                 const char* const* kernel_names, int num_kernel_names, bool binary_output,
                 bool prerotate, const char* const* defines, int num_defines);

    /// What records are ordered by, the highest first: the core's number and the
    /// four numbers of its revision. The name is the reported or the display name.
    using Order_key = std::uint64_t;
    static Order_key order_key(std::string_view core_name, std::string_view core_revision);

    /// The order of records. True, too, when core and revision are equal.
    static bool before(const Vexacm_internal_compiler& a, const Vexacm_internal_compiler& b);

    /// Both write the numbers they find, leave the others alone, and return true.
    static bool parse_core_name(const std::string& core_display_name, std::uint32_t* core_number);
    static bool parse_core_revision(const std::string& core_revision,
                                    std::uint32_t* revision_numbers);

    static std::string get_core_display_name(const std::string& core_name);
    static std::uint32_t
    get_actual_highest_api_version(const std::string& core_display_name,
                                   const std::string& api_name,
                                   const std::vector<std::uint32_t>& api_versions);

    /// Gives up the plug-in, ahead of the record's end: like one that was moved from,
    /// it may then be destroyed or assigned to, and nothing else.
    void release_library() { common.reset(); }

    static void string_copy(const char** destination, const char* source);
    static void copy_compiler_outputs(vexaoc_outputs* destination, const vexaoc_outputs* source);
    static void release_compiler_outputs(vexaoc_outputs* outputs);

private:
    // What the compilers of one plug-in for one shading language have in common.
    struct Common {
        // Kept for operations to come that depend on the plug-in's versions.
        [[maybe_unused]] std::uint32_t library_version_major;
        [[maybe_unused]] std::uint32_t library_version_minor;
        [[maybe_unused]] std::uint32_t library_version_patch;
        [[maybe_unused]] std::int32_t flexible_version_major;
        [[maybe_unused]] std::int32_t flexible_version_minor;
        [[maybe_unused]] std::int32_t flexible_version_patch;

        std::string driver_name;
        std::string api_name;
        std::uint32_t highest_api_version; // of those reported
        std::string extensions;            // reported
        bool binary_output_supported;
        bool prerotate_supported;
        std::shared_ptr<Vexacm_vexaoc_library> library;
    };

    Vexacm_internal_compiler(const std::shared_ptr<const Common>& common,
                             std::string_view reported_core_name, std::string_view core_revision);

    std::string_view shown_core_name() const { return core ? core->shown() : reported_core_name; }
    bool check_request(const char* source, const char* shader_type, int num_kernel_names,
                       bool prerotate, Shader_type* type);
    bool check_gles_request(Shader_type type, int num_kernel_names);
    bool check_gles_extension(std::string_view extension, std::string_view shaders);
    bool call_plugin(vexaoc_inputs* inputs, vexaoc_outputs* outputs) const;
    std::string probe_gles_extensions();
    std::string probe_opencl_extensions();

    // What most queries read lies together.
    std::shared_ptr<const Common> common;
    const Core_name* core; // null where callers see the reported name
    std::uint32_t highest_api_version;
    bool extensions_known;
    std::string reported_core_name; // as the plug-in spells it and gets it back
    std::string core_revision;
    std::string extensions; // found out, where none were reported
};

// Inline, as a query asks every record: a call takes as long as all its comparisons.
[[gnu::always_inline]] inline bool Vexacm_internal_compiler::matches(const Filters& filters) const {
    const auto passes = [](const std::string& text, std::string_view filter) {
        return !filter.data() || text == filter;
    };
    // Cores of the same display name have the same row.
    return passes(common->driver_name, filters.driver_name) &&
           (core ? !filters.core_name.data() || core == filters.core
                 : passes(reported_core_name, filters.core_name)) &&
           passes(core_revision, filters.core_revision) &&
           passes(common->api_name, filters.api_name) &&
           (common->binary_output_supported ? filters.with_binary_output
                                            : filters.without_binary_output) &&
           filters.minimum_api_version <= highest_api_version;
}

} // namespace VexaCM
