// SPDX-License-Identifier: MIT
#pragma once

#include "descriptor.hpp"

#include <string>

namespace vexacm_tool {

/// Takes in what a process prints: a file in memory that two processes share,
/// the one that prints and the one that reads it when that one is gone.
///
/// It does not grow: who prints without end gets an error, and nothing else
/// suffers. The position of the next write is the length of what was printed.
class Capture {
public:
    Capture();

    /// Makes it the standard output and error of this process.
    void catch_standard_streams() const;

    /// What was printed since the last call. Of too much, the beginning and a
    /// line that says so.
    std::string take() const;

    /// The same of this process, with what is left in its buffers.
    std::string finish_and_take() const;

private:
    Descriptor file_;
};

} // namespace vexacm_tool
