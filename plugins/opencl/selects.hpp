// SPDX-License-Identifier: MIT
#pragma once

namespace llvm {
class Module;
}

namespace opencl {

// Makes the condition of each choice between vectors a vector: up to version 1.3 SPIR-V knows no
// other, and the translator does not see to it.
void widen_selects(llvm::Module& module);

} // namespace opencl
