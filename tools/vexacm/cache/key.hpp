// SPDX-License-Identifier: MIT
#pragma once

#include "../compilers.hpp"

#include <string>

namespace vexacm_tool {

/// The name of a compile's result: another one for whatever may change it. A
/// plug-in does not learn what a source is called or where it lies.
std::string cache_key(const vexacm::Request& request, const Compiler& compiler,
                      const std::string& plugin_digest);

} // namespace vexacm_tool
