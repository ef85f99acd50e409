// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"
#include "options.hpp"

namespace opencl {

// Compiles a source; errors in it are part of the outputs. Throws std::bad_alloc.
plugin::Outputs compile(const char* source, const Options& options, bool binary_wanted);

} // namespace opencl
