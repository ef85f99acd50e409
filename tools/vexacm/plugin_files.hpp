// SPDX-License-Identifier: MIT
#pragma once

#include "compilers.hpp"

#include <string>
#include <vector>

namespace vexacm_tool {

/// The file that a compiler came from, below the plug-in directory. The library
/// does not tell it, but a driver's name is a piece of the file's: where several
/// files have it in their names, these are all of them, in order of their names.
std::vector<std::string> plugin_files(const std::string& directory, const Compiler& compiler);

/// Stands for what such a file holds. Throws Failure.
std::string digest_of_file(const std::string& file);

} // namespace vexacm_tool
