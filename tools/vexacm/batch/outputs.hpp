// SPDX-License-Identifier: MIT
#pragma once

#include "jobs.hpp"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vexacm_tool {

/// Where each job's binary goes: DIR/DRIVER/CORE/REVISION/SOURCE.bin.
///
/// Two jobs never share a file, and none lies outside of DIR: what a path would
/// lead elsewhere by is written %XX, the byte in hexadecimal, and so are '%' and
/// '~', so that no name can look like another one. Where a source or a compiler
/// has the name of an earlier one, "~2" and so on is added.
class Output_names {
public:
    Output_names(const std::string& directory, const Jobs& jobs);

    /// The file of a job's binary.
    std::string file(std::size_t job) const;

    /// The file that it is written to at first, in the same folder.
    std::string unfinished_file(std::size_t job) const;

private:
    std::string directory_;
    const Jobs& jobs_;
    int run_;                                       ///< another one in each run
    std::map<unsigned int, std::string> compilers_; ///< folder of each
    std::vector<std::uint32_t> same_name_; ///< of each source: how many had its name before
};

/// A source's file name as a path that goes down from any folder and nowhere
/// else; equal only for names of the same file.
std::string downward_path(std::string_view file);

/// Writes a binary to `file` by way of `unfinished`. Throws Failure.
void write_output(const std::string& file, const std::string& unfinished, std::string_view bytes);

} // namespace vexacm_tool
