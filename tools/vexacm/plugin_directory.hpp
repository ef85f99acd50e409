// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include <vexacm.hpp>

namespace vexacm_tool {

/// The directory that the user named or, when none was, the one that belongs to
/// the tool. Throws Failure when the named one is no directory.
std::string plugin_directory(const std::optional<std::string>& named);

/// Initialises the library. Throws Failure.
vexacm::Library open_library(const std::string& directory);

} // namespace vexacm_tool
