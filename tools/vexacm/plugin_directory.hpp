// SPDX-License-Identifier: MIT
#pragma once

#include "library.hpp"

#include <optional>
#include <string>

namespace vexacm_tool {

/// Initialises the library with the directory that the user named or, when none
/// was, with the one that belongs to the tool. Throws Failure.
Library open_library(const std::optional<std::string>& named);

} // namespace vexacm_tool
