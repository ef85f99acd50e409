// SPDX-License-Identifier: MIT
#pragma once

#include <vexaoc.h>

#include <glslang/Public/ShaderLang.h>

#include <optional>
#include <string>

namespace glsl {

struct Options {
    EShLanguage stage = EShLangCount;
    std::string preamble; // the definitions, as lines that stand before the source
};

// Nothing when an option is unknown, lacks its value or has one that means nothing here, or when
// there is no shader type.
std::optional<Options> read_options(const vexaoc_inputs& inputs);

} // namespace glsl
