// SPDX-License-Identifier: MIT
#include "vexacm_library_manager.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include <dirent.h>

#include "report.hpp"

namespace VexaCM {

namespace {

struct Close_directory {
    void operator()(DIR* directory) const { closedir(directory); }
};

} // namespace

Vexacm_library_manager::Vexacm_library_manager(std::string directory)
    : library_directory(std::move(directory)) {
    std::vector<std::string> paths;
    get_library_paths(library_directory, &paths);

    for (std::string& path : paths) {
        const auto library = std::make_shared<Vexacm_vexaoc_library>(std::move(path));
        if (!library->is_initialized())
            continue;
        // Deliberate: in front of its equals, so that plug-ins with equal names
        // end up in the reverse of the order in which they were found, the
        // OpenCL one of a driver first. Held by
        // LibraryManager.EqualNamesEndUpInReverseOrder.
        libraries.insert(std::partition_point(libraries.begin(), libraries.end(),
                                              [&](const auto& other) {
                                                  return !Vexacm_vexaoc_library::before(library,
                                                                                        other);
                                              }),
                         library);
    }
}

// A vector may destroy its elements in either direction; plug-ins without
// compilers close in order with every standard library.
Vexacm_library_manager::~Vexacm_library_manager() {
    for (std::shared_ptr<Vexacm_vexaoc_library>& library : libraries)
        library.reset();
}

std::vector<std::shared_ptr<Vexacm_vexaoc_library>>
Vexacm_library_manager::get_all_libraries() const {
    return libraries;
}

std::shared_ptr<Vexacm_vexaoc_library> Vexacm_library_manager::get_library(std::string driver_name,
                                                                           std::string api) const {
    for (const auto& library : libraries)
        if (library->get_driver_name() == driver_name &&
            library->get_library_path().find(api) != std::string::npos)
            return library;
    return nullptr;
}

void Vexacm_library_manager::get_library_paths(std::string directory,
                                               std::vector<std::string>* paths) const {
    add_path_separator(&directory);
    get_libraries_from_directory(directory + "openglessl", paths);
    get_libraries_from_directory(directory + "opencl", paths);
}

void Vexacm_library_manager::get_libraries_from_directory(std::string directory,
                                                          std::vector<std::string>* paths) const {
    const std::unique_ptr<DIR, Close_directory> entries(opendir(directory.c_str()));
    if (!entries) {
        report_line("Unable to open library directory ", directory);
        return;
    }
    add_path_separator(&directory);
    while (const dirent* const entry = readdir(entries.get()))
        if (std::string_view(entry->d_name).find(".so") != std::string_view::npos)
            paths->push_back(directory + entry->d_name);
}

void Vexacm_library_manager::add_path_separator(std::string* path) const {
    if (path->empty() || path->back() != '/')
        path->push_back('/');
}

} // namespace VexaCM
