// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

namespace vexacm_tool {

/// Keeps files from taking the place of a standard stream that the caller
/// closed: without this, plug-ins and results would be written into them.
void hold_standard_streams();

/// Says something on standard error, as the tool.
void tell(const std::string& text);

/// From now on, what is printed past the functions below goes to standard error.
/// Throws Failure.
void keep_plugins_off_standard_output();

/// Reads a whole file, or standard input for "-". Throws Failure.
std::string read_source(const std::string& file);

/// The same for what need not be text.
std::string read_any_bytes(const std::string& file);

/// Writes a text of any length, piece by piece.
using Write_text = std::function<void(std::ostream&)>;

/// Writes everything to standard output. Throws Failure.
void write_standard_output(std::string_view text);
void write_standard_output(const Write_text& write);

/// Writes everything to a file, which appears whole or not at all, or to
/// standard output for "-". Throws Failure.
void write_binary(const std::string& file, std::string_view bytes);

/// Writes a text to a file, which appears whole or not at all and is on the disk
/// before it does. Throws Failure.
void write_file_atomically(const std::string& file, const Write_text& write);

} // namespace vexacm_tool
