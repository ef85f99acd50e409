// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace vexacm_tool {

/// Which memory is limited.
enum class Memory {
    all,
    written ///< not the code of plug-ins, which one that opens them has to make room for
};

/// Limits what this process may take in memory beyond what it has, 0 for no
/// limit. When it ends because there is no more, it says so on the connection
/// with Message::memory_out as its last words. Call it once.
void limit_memory(std::size_t megabytes, int connection, Memory which = Memory::all);

/// Whether an allocation failed or next to nothing is left.
bool memory_is_used_up();

/// Before a job: an allocation that failed belongs to the one before.
void forget_failed_allocations();

/// Whether so much of the limit is used that the next job had better find
/// another process.
bool memory_is_short();

} // namespace vexacm_tool
