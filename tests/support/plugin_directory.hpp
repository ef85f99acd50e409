// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fake_plugin.hpp"

/// A temporary directory with the subdirectories "openglessl" and "opencl",
/// filled with copies of the fake plug-in. All of them write to one log.
class Plugin_directory {
public:
    Plugin_directory();
    ~Plugin_directory();
    Plugin_directory(const Plugin_directory&) = delete;
    Plugin_directory& operator=(const Plugin_directory&) = delete;

    /// Adds a copy of the fake, under that file name, and steers it. Returns
    /// its path. `build` is one of the fake's variants.
    std::string add(std::string_view api, std::string_view file_name, const Fake_plugin& plugin,
                    std::string_view build = "fake_plugin");

    /// Adds "lib" + driver name + ".so".
    std::string add_driver(std::string_view api, std::string_view driver_name,
                           const Fake_plugin& plugin, std::string_view build = "fake_plugin");

    /// Adds a file with that text.
    std::string add_file(std::string_view api, std::string_view file_name, std::string_view text);

    /// Takes a subdirectory away.
    void remove(std::string_view api);

    const std::string& root() const { return directory; }
    std::string path(std::string_view api) const;
    std::string path(std::string_view api, std::string_view file_name) const;

    /// The names of the plug-ins in a subdirectory, in the order in which the
    /// system lists them.
    std::vector<std::string> listed(std::string_view api) const;

    /// All that was done to the plug-ins since the last call: a line each.
    std::string take_log();

private:
    std::string directory;
    std::string log_path;
};

/// Reads a whole file.
std::string read_file(const std::string& path);
void write_file(const std::string& path, std::string_view text);
