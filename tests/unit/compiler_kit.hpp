// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vexacm_internal_compiler.hpp"

using Compiler = VexaCM::Vexacm_internal_compiler;

/// The arguments of a compiler's constructor, with something in each.
struct Compiler_arguments {
    std::uint32_t library_version[3] = {1, 2, 3};
    std::int32_t flexible_version[3] = {1, 0, 0};
    std::string driver_name = "Vexa-K300_r5p0-06rel0";
    std::string core_name = "k46x";
    std::string core_revision = "r2p1_05rel3";
    std::string api_name = "openglessl";
    std::vector<std::uint32_t> api_versions = {100, 300, 310, 320};
    std::string extensions = "GL_EXT_one GL_EXT_two ";
    bool binary_output = false;
    bool prerotate = false;
    std::shared_ptr<VexaCM::Vexacm_vexaoc_library> library = nullptr;

    Compiler make() const {
        return Compiler(library_version[0], library_version[1], library_version[2],
                        flexible_version[0], flexible_version[1], flexible_version[2], driver_name,
                        core_name, core_revision, api_name, api_versions, extensions, binary_output,
                        prerotate, library);
    }
};
