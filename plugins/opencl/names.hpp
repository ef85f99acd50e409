// SPDX-License-Identifier: MIT
#pragma once

namespace llvm {
class Module;
}

namespace opencl {

// The translator to SPIR-V takes a function for a built-in when its name looks like one, whatever
// its parameters are, and trips over those that do not fit. So the source's own functions and
// variables are given names that cannot be mistaken; kernels keep theirs.
void make_names_plain(llvm::Module& module);

} // namespace opencl
