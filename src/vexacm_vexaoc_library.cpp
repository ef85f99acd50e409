// SPDX-License-Identifier: MIT
#include "vexacm_vexaoc_library.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <tuple>
#include <utility>

#include <dlfcn.h>

#include "plugin_text.hpp"
#include "report.hpp"

namespace VexaCM {

namespace {

constexpr std::string_view NOT_INIT_ERROR =
    "Library not initialized successfully. This function is unavailable.";

constexpr std::string_view DRIVER_NAME_PREFIX = "Vexa-";
constexpr std::string_view REVISION_DELIMITER = "_r";
constexpr std::string_view PATCH_DELIMITER = "p";
constexpr std::string_view VERSION_DELIMITER = "-";
constexpr std::string_view RELEASE_DELIMITER = "rel";

struct Core_id {
    std::string_view core_part;
    std::int32_t core_id;
};

// A driver release is named after its core family, not after every core it
// supports: these are all the families there are.
constexpr Core_id coreIDs[] = {{"200", 0}, {"K300", 1}};

std::int32_t find_core_id(std::string_view core_part) {
    for (const Core_id& core : coreIDs)
        if (core.core_part == core_part)
            return core.core_id;
    throw std::runtime_error("Unknown core name");
}

// Position of a delimiter of a driver name at or after `from`; throws when
// there is none.
std::size_t find_delimiter(const std::string& name, std::string_view delimiter, std::size_t from,
                           std::string_view what) {
    const std::size_t position = name.find(delimiter, from);
    if (position == std::string::npos) {
        std::string error = "Could not find ";
        error.append(what).append(" delimiter \"").append(delimiter).append("\"");
        throw std::runtime_error(error);
    }
    return position;
}

// Converts the field between `from` and the delimiter at `end`.
//
// Deliberate: the text is `end` characters long, counted from the field's own
// start, and so runs on past the delimiter. Drivers are told apart this way:
// the empty patch of Vexa-K300_r5p-3rel0 reads as -3. Held by
// DriverName.ReadsAnEmptyPatchFromBehindItsDelimiter.
std::int32_t field_number(const std::string& name, std::size_t from, std::size_t end) {
    return to_int(name.substr(from, end).c_str());
}

std::string version_text(std::uint32_t major, std::uint32_t minor, std::uint32_t patch) {
    char text[sizeof "4294967295.4294967295.4294967295"];
    std::snprintf(text, sizeof text, "%u.%u.%u", major, minor, patch);
    return text;
}

} // namespace

Vexacm_vexaoc_library::ParsedDriverName::ParsedDriverName(const std::string& name) {
    try {
        parse_driver_name(name);
    } catch (const std::exception& error) {
        report_line("Driver name parse error: \"", name,
                    "\" has an unknown name format: ", error.what());
    }
}

void Vexacm_vexaoc_library::ParsedDriverName::parse_driver_name(const std::string& name) {
    if (name.compare(0, DRIVER_NAME_PREFIX.size(), DRIVER_NAME_PREFIX) != 0) {
        std::string error = "Name does not begin with \"";
        error.append(DRIVER_NAME_PREFIX).append("\"");
        throw std::runtime_error(error);
    }

    const std::size_t core_at = DRIVER_NAME_PREFIX.size();
    const std::size_t core_end = find_delimiter(name, REVISION_DELIMITER, core_at, "revision");
    core_id = find_core_id(std::string_view(name).substr(core_at, core_end - core_at));

    const std::size_t revision_at = core_end + REVISION_DELIMITER.size();
    const std::size_t revision_end = find_delimiter(name, PATCH_DELIMITER, revision_at, "patch");
    revision = field_number(name, revision_at, revision_end);

    const std::size_t patch_at = revision_end + PATCH_DELIMITER.size();
    const std::size_t patch_end = find_delimiter(name, VERSION_DELIMITER, patch_at, "version");
    patch = field_number(name, patch_at, patch_end);

    const std::size_t version_at = patch_end + VERSION_DELIMITER.size();
    const std::size_t version_end = find_delimiter(name, RELEASE_DELIMITER, version_at, "release");
    version = field_number(name, version_at, version_end);

    release = field_number(name, version_end + RELEASE_DELIMITER.size(), std::string::npos);
}

bool Vexacm_vexaoc_library::ParsedDriverName::before(const ParsedDriverName& other) const {
    // Deliberate: equal names come before each other, in both directions. This
    // tie is part of the order of plug-ins (see Vexacm_library_manager). Held
    // by DriverNameOrder.EqualNamesComeBeforeEachOther.
    return std::tie(core_id, revision, patch, version, release) >=
           std::tie(other.core_id, other.revision, other.patch, other.version, other.release);
}

void Vexacm_vexaoc_library::Close_library::operator()(void* opened) const {
    dlclose(opened);
}

Vexacm_vexaoc_library::Vexacm_vexaoc_library(std::string path) : library_path(std::move(path)) {
    initialized =
        open() && has_all_functions() && has_supported_interface() && has_supported_capabilities();
    // A refused plug-in is closed before it is named: what it prints as it goes
    // comes before a complaint about its name.
    if (!initialized)
        handle.reset();
    path_to_driver_name(library_path);
}

bool Vexacm_vexaoc_library::open() {
    handle.reset(dlopen(library_path.c_str(), RTLD_NOW));
    if (handle)
        return true;
    // A copy: a host's own buffer that uses the loader ends the text's life.
    const std::string reason = text_or_empty(dlerror());
    report_line("Couldn't load library at ", library_path);
    report_line("Library load error: ", reason);
    return false;
}

template <class Function>
void Vexacm_vexaoc_library::bind(Function& function, const char* name) {
    // To dlsym a null handle is no error: it searches the whole process.
    function = handle ? reinterpret_cast<Function>(dlsym(handle.get(), name)) : nullptr;
}

bool Vexacm_vexaoc_library::get_library_functions() {
    bind(get_api_version_function, "vexaoc_get_api_version");
    bind(compile_function, "vexaoc_compile");
    bind(release_outputs_function, "vexaoc_release_outputs");
    bind(get_capabilities_function, "vexaoc_get_capabilities");
    bind(release_capabilities_function, "vexaoc_release_capabilities");
    return get_api_version_function && compile_function && release_outputs_function &&
           get_capabilities_function && release_capabilities_function;
}

bool Vexacm_vexaoc_library::has_all_functions() {
    if (get_library_functions())
        return true;
    report_line("Library at ", library_path, " isn't implemented correctly");
    return false;
}

bool Vexacm_vexaoc_library::has_supported_interface() const {
    vexaoc_api_version version = {};
    get_api_version_function(&version);
    if (version.major == 1)
        return true;
    report_line("Library at ", library_path, " has version ",
                version_text(version.major, version.minor, version.patch), ".");
    report_line("This compiler manager supports library version v1.x.x only. Please upgrade to a "
                "later compiler manager version.");
    return false;
}

bool Vexacm_vexaoc_library::has_supported_capabilities() const {
    vexaoc_capabilities capabilities;
    std::memset(&capabilities, 0, sizeof capabilities);
    if (get_capabilities_function(&capabilities) != 0) {
        report_line("Failed to get capabilities for library ", library_path, ".");
        return false;
    }
    const std::unique_ptr<vexaoc_capabilities, vexaoc_release_capabilities_function> owner(
        &capabilities, release_capabilities_function);

    bool supported = true;
    for_each_capability(capabilities, [&](std::string_view key, const char* value) {
        if (key == "flexible_version" && !is_supported_flexible_version(value))
            supported = false;
    });
    return supported;
}

// Deliberate: a malformed version goes on to the range test with the numbers
// that were read, so that "abc" is reported twice and "1.2" once. Held by
// LibraryLoad.AMalformedFlexibleVersionIsReportedTwiceWhenItsMajorIsMissing.
bool Vexacm_vexaoc_library::is_supported_flexible_version(const char* text) const {
    std::uint32_t version[3] = {};
    bool supported = true;
    if (read_version(text, version, std::strtoul) != 3) {
        report_line("Invalid or malformed flexible version specified for library ", library_path,
                    ".");
        report_line("Version specified: ", text);
        supported = false;
    }
    if (version[0] == 0 || version[0] > 3) {
        report_line("Library at ", library_path, " uses flexible version ",
                    version_text(version[0], version[1], version[2]), ".");
        report_line("This compiler manager supports flexible versions v1.x.x, v2.x.x and v3.x.x "
                    "only. Please upgrade to a later compiler manager version.");
        supported = false;
    }
    return supported;
}

void Vexacm_vexaoc_library::path_to_driver_name(std::string path) {
    const std::size_t slash = path.rfind('/');
    if (slash != std::string::npos && slash + 1 != path.size())
        path.erase(0, slash + 1);

    // Deliberate: any of the three characters ends the name, not the text
    // ".so", and two more go before it: libX.so.1 keeps "X.". Held by
    // DriverNameFromPath.CutsTwoCharactersBeforeTheLastDotSOrO.
    const std::size_t ending = path.find_last_of(".so");
    if (ending != std::string::npos && ending >= 2)
        path.erase(ending - 2);

    const std::size_t lib = path.find("lib");
    if (lib != std::string::npos)
        path.erase(0, lib + 3);

    driver_name = std::move(path);
    parsed_name = ParsedDriverName(driver_name);
}

bool Vexacm_vexaoc_library::before(const std::shared_ptr<Vexacm_vexaoc_library>& a,
                                   const std::shared_ptr<Vexacm_vexaoc_library>& b) {
    return a->parsed_name.before(b->parsed_name);
}

template <class Function, class... Arguments>
int Vexacm_vexaoc_library::forward(Function function, Arguments... arguments) const {
    if (!initialized) {
        report_line(NOT_INIT_ERROR);
        return VEXAOC_MEMORY_ERROR;
    }
    return function(arguments...);
}

void Vexacm_vexaoc_library::get_api_version(vexaoc_api_version* version) const {
    forward(
        [this](vexaoc_api_version* filled) {
            get_api_version_function(filled);
            return 0;
        },
        version);
}

int Vexacm_vexaoc_library::compile(vexaoc_inputs* inputs, vexaoc_outputs* outputs) const {
    return forward(compile_function, inputs, outputs);
}

int Vexacm_vexaoc_library::release_compilation_result(vexaoc_outputs* outputs) const {
    return forward(release_outputs_function, outputs);
}

int Vexacm_vexaoc_library::get_capabilities(vexaoc_capabilities* capabilities) const {
    return forward(get_capabilities_function, capabilities);
}

int Vexacm_vexaoc_library::release_capabilities(vexaoc_capabilities* capabilities) const {
    return forward(release_capabilities_function, capabilities);
}

} // namespace VexaCM
