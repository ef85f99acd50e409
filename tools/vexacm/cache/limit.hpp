// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace vexacm_tool {

// How many blocks a cache takes is told by the length of a file in it, so that
// processes can count without waiting for each other and without looking through the
// cache. It is too great where an entry was replaced, and too small by what a process
// stored and was killed before it counted: looking through the cache puts it right.

/// So many more were stored.
void count_blocks(const std::string& folder, std::uint64_t blocks);

/// Nobody knows how many there are now.
void forget_blocks(const std::string& folder);

/// When more are counted than these, or nobody knows: looks through the cache,
/// removes what was not used for longest, a tenth more than it must, and notes what
/// is left. Not while another process does it. False when that did not help.
bool keep_limit(const std::string& folder, std::uint64_t most_blocks);

} // namespace vexacm_tool
