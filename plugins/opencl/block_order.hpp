// SPDX-License-Identifier: MIT
#pragma once

namespace llvm {
class Module;
}

namespace opencl {

// Puts each block after the one that leads to it, as SPIR-V asks. clang leaves them in the order of
// the source, which goto can cross.
void order_blocks(llvm::Module& module);

} // namespace opencl
