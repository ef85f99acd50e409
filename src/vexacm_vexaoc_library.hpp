// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "vexaoc.h"

namespace VexaCM {

/// One opened plug-in: its file, its five functions, and the driver release
/// that its file name stands for. Whether it loaded is settled by the
/// constructor; a refused one keeps its names and answers every call with 4.
class Vexacm_vexaoc_library {
public:
    /// A driver name such as Vexa-K300_r5p0-06rel0 in numbers; -1 is not parsed.
    struct ParsedDriverName {
        ParsedDriverName() = default;

        /// Parses; a bad name is reported and leaves the fields known so far.
        explicit ParsedDriverName(const std::string& name);

        /// Fills the fields, each as soon as it is known; throws on a bad name.
        void parse_driver_name(const std::string& name);

        /// True when this is the newer name, and also when both are equal.
        bool before(const ParsedDriverName& other) const;

        std::int32_t core_id = -1;
        std::int32_t revision = -1;
        std::int32_t patch = -1;
        std::int32_t version = -1;
        std::int32_t release = -1;
    };

    /// Opens and checks the plug-in. Refusals are reported, never thrown.
    explicit Vexacm_vexaoc_library(std::string path);

    bool is_initialized() const { return initialized; }
    const std::string& get_driver_name() const { return driver_name; }
    const ParsedDriverName& get_parsed_name() const { return parsed_name; }
    const std::string& get_library_path() const { return library_path; }

    /// The plug-in's functions. On a refused plug-in each reports that it is
    /// unavailable and answers 4.
    void get_api_version(vexaoc_api_version* version) const;
    int compile(vexaoc_inputs* inputs, vexaoc_outputs* outputs) const;
    int release_compilation_result(vexaoc_outputs* outputs) const;
    int get_capabilities(vexaoc_capabilities* capabilities) const;
    int release_capabilities(vexaoc_capabilities* capabilities) const;

    /// Binds the five functions; false when the plug-in lacks one.
    bool get_library_functions();

    /// Sets the driver name, and its parsed form, from a plug-in's path.
    void path_to_driver_name(std::string path);

    /// The order of plug-ins: that of their parsed names.
    static bool before(const std::shared_ptr<Vexacm_vexaoc_library>& a,
                       const std::shared_ptr<Vexacm_vexaoc_library>& b);

private:
    struct Close_library {
        void operator()(void* opened) const;
    };

    template <class Function>
    void bind(Function& function, const char* name);
    template <class Function, class... Arguments>
    int forward(Function function, Arguments... arguments) const;

    bool open();
    bool has_all_functions();
    bool has_supported_interface() const;
    bool has_supported_capabilities() const;
    bool is_supported_flexible_version(const char* text) const;

    std::string driver_name;
    ParsedDriverName parsed_name;
    std::string library_path;
    std::unique_ptr<void, Close_library> handle;
    vexaoc_get_api_version_function get_api_version_function = nullptr;
    vexaoc_compile_function compile_function = nullptr;
    vexaoc_release_outputs_function release_outputs_function = nullptr;
    vexaoc_get_capabilities_function get_capabilities_function = nullptr;
    vexaoc_release_capabilities_function release_capabilities_function = nullptr;
    bool initialized = false;
};

} // namespace VexaCM
