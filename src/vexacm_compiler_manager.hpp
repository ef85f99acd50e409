// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vexacm.h"
#include "vexacm_internal_compiler.hpp"

namespace VexaCM {

class Vexacm_vexaoc_library;

/// The catalogue: every compiler of every plug-in of a directory. A compiler's
/// ID is its position; IDs are not checked.
class Vexacm_compiler_manager {
public:
    /// Loads every plug-in and builds the whole catalogue.
    explicit Vexacm_compiler_manager(std::string directory);
    ~Vexacm_compiler_manager();

    Vexacm_compiler_manager(const Vexacm_compiler_manager&) = delete;
    Vexacm_compiler_manager& operator=(const Vexacm_compiler_manager&) = delete;

    void get_manager_version(vexacm_version* version) const;

    void get_compilers(unsigned int** compilers, unsigned int* count, const char* driver_name,
                       const char* core_name, const char* core_revision, const char* api_name,
                       const char* binary_output, unsigned int api_version) const;
    void release_compilers(unsigned int** compilers, unsigned int count) const;

    const char* get_driver_name(unsigned int compiler_id) const;
    const char* get_core_name(unsigned int compiler_id) const;
    const char* get_core_revision(unsigned int compiler_id) const;
    const char* get_api_name(unsigned int compiler_id) const;
    unsigned int get_highest_api_version(unsigned int compiler_id) const;
    const char* get_extensions(unsigned int compiler_id);
    bool is_binary_output_supported(unsigned int compiler_id) const;
    bool is_prerotate_supported(unsigned int compiler_id) const;

    bool compile(vexaoc_outputs* outputs, const char* source, const char* shader_type,
                 const char* const* kernel_names, int num_kernel_names, bool binary_output,
                 bool prerotate, const char* const* defines, int num_defines,
                 unsigned int compiler_id);
    void release_compiler_outputs(vexaoc_outputs* outputs) const;

private:
    Vexacm_compiler_manager() = default;

    void load_compilers(std::string directory);
    bool add_library(const std::shared_ptr<Vexacm_vexaoc_library>& library);

    std::vector<Vexacm_internal_compiler> catalogue;
    // The plug-in that ended the catalogue by an exception after it had given
    // compilers: it closes behind the others that did.
    std::shared_ptr<Vexacm_vexaoc_library> unfinished;
};

} // namespace VexaCM
