// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"
#include "spirv.hpp"

namespace glslang {
class TIntermediate;
}

namespace glsl {

// A row of headings, then a row for each number.
std::vector<plugin::Texts> statistics(const glslang::TIntermediate& tree, const Spirv& words);

} // namespace glsl
