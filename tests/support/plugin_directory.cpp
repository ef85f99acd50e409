// SPDX-License-Identifier: MIT
#include "plugin_directory.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <dirent.h>

namespace fs = std::filesystem;

std::string read_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void write_file(const std::string& path, std::string_view text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

Plugin_directory::Plugin_directory() {
    std::string name = (fs::temp_directory_path() / "plugins-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("cannot make a temporary directory");
    // The log lies outside the root, so that the root holds nothing but plug-ins.
    directory = name + "/root";
    log_path = name + "/log";
    fs::create_directories(path("openglessl"));
    fs::create_directories(path("opencl"));
}

Plugin_directory::~Plugin_directory() {
    std::error_code ignored;
    fs::remove_all(fs::path(directory).parent_path(), ignored);
}

std::string Plugin_directory::add(std::string_view api, std::string_view file_name,
                                  const Fake_plugin& plugin, std::string_view build) {
    const std::string plugin_path = path(api, file_name);
    // A copy: the loader takes two links to one file for one library.
    fs::copy_file(std::string(FAKE_PLUGIN_DIRECTORY "/") + std::string(build) + ".so", plugin_path,
                  fs::copy_options::overwrite_existing);
    std::string steering_path = plugin_path;
    for (std::size_t dot; (dot = steering_path.find(".so")) != std::string::npos;)
        steering_path[dot] = '-';
    write_file(steering_path + ".steer", "log " + log_path + "\n" + plugin.steering());
    return plugin_path;
}

std::string Plugin_directory::add_driver(std::string_view api, std::string_view driver_name,
                                         const Fake_plugin& plugin, std::string_view build) {
    return add(api, "lib" + std::string(driver_name) + ".so", plugin, build);
}

std::string Plugin_directory::add_file(std::string_view api, std::string_view file_name,
                                       std::string_view text) {
    write_file(path(api, file_name), text);
    return path(api, file_name);
}

void Plugin_directory::remove(std::string_view api) {
    fs::remove_all(path(api));
}

std::string Plugin_directory::path(std::string_view api) const {
    return directory + "/" + std::string(api);
}

std::string Plugin_directory::path(std::string_view api, std::string_view file_name) const {
    return path(api) + "/" + std::string(file_name);
}

std::vector<std::string> Plugin_directory::listed(std::string_view api) const {
    std::vector<std::string> names;
    DIR* const entries = opendir(path(api).c_str());
    while (const dirent* const entry = entries ? readdir(entries) : nullptr)
        if (std::string_view(entry->d_name).find(".so") != std::string_view::npos)
            names.emplace_back(entry->d_name);
    if (entries)
        closedir(entries);
    return names;
}

std::string Plugin_directory::take_log() {
    std::string log = read_file(log_path);
    std::error_code ignored;
    fs::remove(log_path, ignored);
    return log;
}
