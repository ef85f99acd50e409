// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>
#include <vexacm.hpp>

namespace vexacm_tool {

/// What a compile gave, in texts of the tool's own.
struct Compiled {
    bool has_errors = false;
    std::vector<std::string> errors;
    std::vector<std::string> warnings;
    std::vector<std::vector<std::string>> tables;
    std::uint64_t binary_size = 0;
    std::string binary;  ///< when it was asked for
    std::string printed; ///< what the plug-in printed, where that was caught
};

/// Nothing when the request was not carried out.
std::optional<Compiled> compile_with(unsigned int compiler_id, const vexacm::Request& request);

} // namespace vexacm_tool
