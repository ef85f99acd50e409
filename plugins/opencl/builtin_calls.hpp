// SPDX-License-Identifier: MIT
#pragma once

#include <llvm/ADT/StringRef.h>

namespace llvm {
class CallInst;
class Function;
} // namespace llvm

namespace opencl {

// How clang names what makes a sampler of a number.
constexpr llvm::StringLiteral SAMPLER = "__translate_sampler_initializer";

// Whether the translator to SPIR-V can do with a call of a function that the source does not
// define: it knows fewer of them than clang, and expects more of their arguments.
bool is_known_call(const llvm::CallInst& call, const llvm::Function& called);

} // namespace opencl
