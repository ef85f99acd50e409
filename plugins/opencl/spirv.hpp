// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"

#include <cstdint>
#include <vector>

namespace llvm {
class Module;
}

namespace opencl {

// Translates the module, and changes it on the way. Nothing comes, and an error is added, when the
// translator refuses it.
std::vector<std::uint8_t> make_spirv(llvm::Module& module, plugin::Outputs& outputs);

} // namespace opencl
