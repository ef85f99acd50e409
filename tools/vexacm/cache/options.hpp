// SPDX-License-Identifier: MIT
#pragma once

#include "cache.hpp"

namespace CLI {
class App;
}

namespace vexacm_tool {

/// Adds the options for a cache to a command that compiles.
void add_cache_options(CLI::App& command, Cache_settings& settings);

/// Throws Failure when they make no sense.
void check(const Cache_settings& settings);

} // namespace vexacm_tool
