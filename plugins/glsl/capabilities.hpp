// SPDX-License-Identifier: MIT
#pragma once

#include <vexaoc.h>

namespace glsl {

// The same record each time, made of constants: there is nothing to release.
vexaoc_capabilities capabilities();

bool knows_core(const char* name, const char* revision);

} // namespace glsl
