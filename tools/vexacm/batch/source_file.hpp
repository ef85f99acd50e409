// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace vexacm_tool {

/// Why a source cannot be compiled: the reason alone, without the file's name.
struct Unreadable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The text of a source. Only regular files: reading a pipe may wait for ever, and
/// takes what is read away from the next reader. Throws Unreadable.
std::string read_source_file(const std::string& file);

} // namespace vexacm_tool
