// SPDX-License-Identifier: MIT
#pragma once

#include "seconds.hpp"

#include <string>

namespace vexacm_tool {

/// Opens the plug-ins of a directory and closes them, in a child: this process
/// does it only when that went well. Throws Failure, with the plug-ins that are to
/// blame, when the child ended or did not get through in time.
void try_plugins(const std::string& directory, Seconds timeout);

} // namespace vexacm_tool
