// SPDX-License-Identifier: MIT
#pragma once

#include "compilers.hpp"

#include <string>

namespace vexacm_tool {

/// Tells errors, then warnings on standard error, each after the file's name.
void print_diagnostics(const std::string& file, const vexaoc_outputs& outputs);

std::string compiler_line(const Compiler& compiler);

/// The tables and, where a file is named, the binary in it.
std::string report(const vexaoc_outputs& outputs, const std::string& binary_file);

/// The compiler, the same and the diagnostics as one JSON object.
std::string json_report(const Compiler& compiler, const vexaoc_outputs& outputs);

} // namespace vexacm_tool
