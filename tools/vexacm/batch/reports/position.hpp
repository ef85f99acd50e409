// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace vexacm_tool {

/// A place in a source; both count from 1.
struct Position {
    unsigned int line;
    std::optional<unsigned int> column;
};

/// The place that a diagnostic names, in one of the two forms in use:
///
///     ERROR: 0:LINE: text                  glslang; also WARNING, with a column
///     FILE:LINE:COLUMN: error: text        clang; also without FILE, warning ...
///
/// A place in another source string than the first is none in the source.
std::optional<Position> position_of(std::string_view diagnostic);

} // namespace vexacm_tool
