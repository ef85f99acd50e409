// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vexacm_tool {

/// A file to compile, and how.
struct Source {
    std::string file;
    std::string stage;
    std::vector<std::string> defines = {}; ///< behind those for all sources
    std::vector<std::string> kernels = {};
};

/// The sources that a command line names: files, @LIST for the files in a list,
/// and a manifest; with give_kernels(). Throws Failure.
std::vector<Source> named_sources(const std::vector<std::string>& arguments,
                                  const std::optional<std::string>& manifest,
                                  const std::vector<std::string>& kernels);

/// Gives these names to kernel sources that have none of their own. Throws Failure
/// when one has none then, and when it is a shader that has some.
void give_kernels(std::vector<Source>& sources, const std::vector<std::string>& kernels);

} // namespace vexacm_tool
