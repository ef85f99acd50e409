// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"

#include <string>
#include <vector>

namespace llvm {
class Module;
}

namespace opencl {

bool has_kernel(const llvm::Module& module, const std::string& name);

// A row of headings, then a row for each kernel: what it declares, and its instructions, those of
// the functions that it calls included, each function once.
std::vector<plugin::Texts> kernel_table(const llvm::Module& module);

} // namespace opencl
