// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace glslang {
class TIntermediate;
}

namespace glsl {

// How many pairs there are of a function and another that it calls.
std::size_t calls_in(const glslang::TIntermediate& tree);

} // namespace glsl
