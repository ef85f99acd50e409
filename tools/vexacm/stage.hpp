// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace vexacm_tool {

/// Names of all stages, as the library knows them.
std::vector<std::string> stage_names();

/// The stage that a file's ending tells, or the empty text.
std::string stage_of_file(const std::string& file);

/// Name of the API whose compilers compile a stage.
std::string api_of_stage(const std::string& stage);

} // namespace vexacm_tool
