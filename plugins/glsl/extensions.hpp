// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"
#include "expanded_source.hpp"

namespace glsl {

// glslang knows extensions by name and accepts each in every version. This reports those that the
// version does not have: an error where one is required, else a warning.
void check_extensions(const Expanded_source& source, int version, plugin::Outputs& outputs);

} // namespace glsl
