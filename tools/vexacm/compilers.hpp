// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vexacm.hpp>

namespace vexacm_tool {

using vexacm::Compiler;
using vexacm::Compiler_ids;

const char* yes_or_no(bool answer);
nlohmann::ordered_json to_json(const Compiler& compiler);

/// The value as it is printed; bytes that are no UTF-8 are replaced.
std::string to_text(const nlohmann::ordered_json& value);

} // namespace vexacm_tool
