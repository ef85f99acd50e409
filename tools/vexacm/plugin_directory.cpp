// SPDX-License-Identifier: MIT
#include "plugin_directory.hpp"

#include "failure.hpp"

#include <exception>
#include <filesystem>

namespace vexacm_tool {

namespace {

namespace fs = std::filesystem;

std::string named_directory(const std::string& named) {
    std::error_code error;
    if (fs::is_directory(named, error))
        return named;
    const std::string reason = error ? error.message() : "Not a directory";
    throw Failure{Exit_status::wrong_use, "plug-in directory '" + named + "': " + reason};
}

// Beside the tool in the build folder, in the library folder once installed.
std::string default_directory() {
    std::error_code unknown;
    const fs::path home = fs::read_symlink("/proc/self/exe", unknown).parent_path();
    if (unknown)
        throw Failure{Exit_status::input_output,
                      "cannot find its own plug-ins, as /proc is not mounted: use --plugins"};
    const fs::path built = home / "plugins";
    std::error_code missing;
    return (fs::is_directory(built, missing) ? built : home / ".." / VEXACM_PLUGIN_DIR).string();
}

} // namespace

std::string plugin_directory(const std::optional<std::string>& named) {
    return named ? named_directory(*named) : default_directory();
}

vexacm::Library open_library(const std::string& directory) {
    try {
        return vexacm::Library{directory};
    } catch (const std::exception& error) {
        throw Failure{Exit_status::refused,
                      "the plug-ins in '" + directory + "' cannot be used: " + error.what()};
    }
}

} // namespace vexacm_tool
