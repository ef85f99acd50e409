// SPDX-License-Identifier: MIT
#pragma once

#include "cache.hpp"

namespace vexacm_tool {

/// compile_with(), or what it gave before; either puts what the plug-in prints on standard
/// error, and there when it is done. Nothing when the request was not carried out.
std::optional<Compiled> compile_with_cache(const vexacm::Request& request, const Compiler& compiler,
                                           Cache& cache);

} // namespace vexacm_tool
