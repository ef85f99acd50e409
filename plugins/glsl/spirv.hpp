// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"

#include <glslang/Public/ShaderLang.h>

#include <vector>

namespace glsl {

using Spirv = std::vector<unsigned int>;

// Makes SPIR-V 1.0 for OpenGL of a program that linked. Bindings, locations and offsets that the
// source leaves open are chosen. Nothing comes, and an error is added, when a variable is beyond
// all measure.
Spirv make_spirv(glslang::TProgram& program, EShLanguage stage, plugin::Outputs& outputs);

} // namespace glsl
