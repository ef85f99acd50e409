// SPDX-License-Identifier: MIT
#pragma once

#include "compiled.hpp"
#include "compilers.hpp"

#include <string>

namespace vexacm_tool {

/// Tells errors, then warnings on standard error, each after the file's name.
void print_diagnostics(const std::string& file, const Compiled& compiled);

std::string compiler_line(const Compiler& compiler);

/// The tables and, where a file is named, the binary in it.
std::string report(const Compiled& compiled, const std::string& binary_file);

/// The compiler, the same and the diagnostics as one JSON object.
std::string json_report(const Compiler& compiler, const Compiled& compiled);

} // namespace vexacm_tool
