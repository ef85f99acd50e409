// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vexacm_tool {

/// Keeps files from taking the place of a standard stream that the caller
/// closed: without this, plug-ins and results would be written into them.
void hold_standard_streams();

/// Reads a whole file, or standard input for "-". Throws Failure.
std::string read_source(const std::string& file);

/// Writes everything to standard output. Throws Failure.
void write_standard_output(std::string_view text);

/// Writes everything to a file, which appears whole or not at all, or to
/// standard output for "-". Throws Failure.
void write_binary(const std::string& file, std::string_view bytes);

} // namespace vexacm_tool
