// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace plugin {

// A macro as the option "define" gives it.
struct Definition {
    std::string name;
    std::string value;
};

// Reads NAME=VALUE, or NAME, which is then 1. Nothing when it is neither or would be more than
// the definition of one macro.
std::optional<Definition> read_definition(std::string_view text);

} // namespace plugin
