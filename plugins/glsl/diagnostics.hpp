// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"

#include <string_view>

namespace glsl {

// Takes glslang's log apart: one text for each error, warning and note.
void add_diagnostics(std::string_view log, plugin::Outputs& outputs);

} // namespace glsl
