// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace vexacm_tool {

using Row = std::vector<std::string>;

/// One line: control characters, which would break a table, become blanks.
std::string one_line(const std::string& text);

/// Rows of text in aligned columns; rows may differ in length.
std::string aligned(const std::vector<Row>& rows);

} // namespace vexacm_tool
