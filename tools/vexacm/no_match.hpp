// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vexacm.hpp>

namespace vexacm_tool {

/// Why no compiler of that directory passes the filters, and what there is. The
/// library must be initialised with the directory.
std::string why_none(const vexacm::Filters& filters, const std::string& directory);

/// The IDs of those that pass; there is at least one. Throws Failure.
vexacm::Compiler_ids some_compilers(const vexacm::Filters& filters, const std::string& directory);

} // namespace vexacm_tool
