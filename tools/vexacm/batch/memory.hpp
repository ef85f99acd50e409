// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace vexacm_tool {

/// Limits what this process may take in memory beyond what it has, 0 for no
/// limit. When it ends because there is no more, it says so on the connection
/// with Message::memory_out as its last words. Call it once.
void limit_memory(std::size_t megabytes, int connection);

/// Before a job: an allocation that failed belongs to the one before.
void forget_failed_allocations();

/// Whether so much of the limit is used that the next job had better find
/// another process.
bool memory_is_short();

} // namespace vexacm_tool
