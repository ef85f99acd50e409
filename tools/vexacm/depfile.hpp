// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace vexacm_tool {

/// The text of a dependency file for make and for Ninja: that `target` is to be
/// made anew when one of `sources` is newer, or gone. Throws Failure for a name
/// that not both would read as it is.
std::string dependency_rule(const std::string& target, const std::vector<std::string>& sources);

} // namespace vexacm_tool
