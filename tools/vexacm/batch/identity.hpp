// SPDX-License-Identifier: MIT
#pragma once

#include "../compilers.hpp"
#include "batch.hpp"

#include <string>
#include <vector>

namespace vexacm_tool {

/// What tells a run from all that could give other results: its sources and what
/// is in them, its compilers and what is in their plug-ins, and how it has them
/// compile. Who runs it, where and for how long is no part of it.
class Identity {
public:
    /// Reads all sources and plug-ins; cut short when an interrupt is noted.
    /// Throws Failure when a plug-in cannot be read.
    Identity(const Batch& batch, const std::vector<Compiler>& compilers,
             const std::string& directory);

    /// Stands for all of it, in 32 hexadecimal digits.
    const std::string& run() const { return run_; }

private:
    std::string run_;
};

} // namespace vexacm_tool
