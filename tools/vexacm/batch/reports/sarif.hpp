// SPDX-License-Identifier: MIT
#pragma once

#include "../result.hpp"

#include <iosfwd>

namespace vexacm_tool {

/// SARIF 2.1.0. What several compilers say of a source alike is one result,
/// with the compilers in its property bag: readers show each result by itself.
void write_sarif(const Result_source& results, std::ostream& out);

} // namespace vexacm_tool
