// SPDX-License-Identifier: MIT
#pragma once

#include "merged.hpp"

namespace vexacm_tool {

/// Tells on standard error which results are missing, shard by shard where they
/// are known. Returns whether any is.
bool tell_missing(const Merged& merged);

} // namespace vexacm_tool
