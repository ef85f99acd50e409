// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"

namespace llvm {
class Module;
}

namespace opencl {

// Adds an error for each thing in the module that would crash the translator to SPIR-V or make it
// end the process. What can be told from the source, with its place, source_check.hpp tells.
void check_module(const llvm::Module& module, plugin::Outputs& outputs);

} // namespace opencl
