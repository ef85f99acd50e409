// SPDX-License-Identifier: MIT
#pragma once

#include <llvm/ADT/StringRef.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Operator.h>
#include <llvm/IR/Type.h>

namespace opencl {

// How clang names what makes a sampler of a number.
constexpr llvm::StringLiteral SAMPLER = "__translate_sampler_initializer";

// What the translator to SPIR-V knows. Whatever is none of this crashes it or ends the process.

// A type alone, without its parts.
bool is_known_type(const llvm::Type& type);

// An instruction or constant, whatever its operands are.
bool is_known_opcode(unsigned opcode);

bool is_known_cast(const llvm::AddrSpaceCastOperator& cast);

bool is_known_atomic(llvm::AtomicRMWInst::BinOp operation);

// A call of a function that the source does not define.
bool is_known_call(const llvm::CallInst& call, const llvm::Function& called);

} // namespace opencl
