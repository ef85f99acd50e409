// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace glsl {

struct Extension_directive {
    std::string place; // "0:12": string and line as glslang's messages give them
    std::string name;
    std::string behavior;
};

// What matters of a source that glslang has preprocessed: comments are gone, macros expanded,
// and of the directives only those are left that #if did not leave out.
struct Expanded_source {
    std::vector<Extension_directive> extensions;
    std::size_t tokens = 0;
    std::size_t largest_struct = 0; // in members, those of structures in it included
};

Expanded_source read_expanded(std::string_view text);

} // namespace glsl
