// SPDX-License-Identifier: MIT
#pragma once

#include "seconds.hpp"

#include <cstddef>
#include <string>

namespace vexacm_tool {

/// What opening the plug-ins may take.
struct Trial_limits {
    Seconds timeout;
    std::size_t memory; ///< in megabytes, 0: no limit
};

/// Opens the plug-ins of a directory and closes them, in a child: this process
/// does it only when that went well. Throws Failure, with the plug-ins that are to
/// blame, when the child ended or did not get through within the limits.
void try_plugins(const std::string& directory, const Trial_limits& limits);

} // namespace vexacm_tool
