// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vexacm_vexaoc_library.hpp"

namespace VexaCM {

/// Finds the plug-ins of a directory, opens them, and orders them newest driver
/// first. Lives only while the catalogue is built.
class Vexacm_library_manager {
public:
    explicit Vexacm_library_manager(std::string directory);
    ~Vexacm_library_manager();
    Vexacm_library_manager(const Vexacm_library_manager&) = delete;
    Vexacm_library_manager& operator=(const Vexacm_library_manager&) = delete;

    /// All plug-ins that loaded, in order.
    std::vector<std::shared_ptr<Vexacm_vexaoc_library>> get_all_libraries() const;

    /// The first plug-in of that driver whose path contains `api`, or none.
    std::shared_ptr<Vexacm_vexaoc_library> get_library(std::string driver_name,
                                                       std::string api) const;

    /// Appends the paths of the candidates in both subdirectories of a root.
    void get_library_paths(std::string directory, std::vector<std::string>* paths) const;

    /// Appends the paths of the candidates in one directory.
    void get_libraries_from_directory(std::string directory, std::vector<std::string>* paths) const;

    void add_path_separator(std::string* path) const;

private:
    std::vector<std::shared_ptr<Vexacm_vexaoc_library>> libraries;
    std::string library_directory;
};

} // namespace VexaCM
