// SPDX-License-Identifier: MIT
#pragma once

#include <llvm/IR/Instructions.h>
#include <llvm/IR/Operator.h>
#include <llvm/IR/Type.h>

namespace opencl {

// What the translator to SPIR-V knows. Whatever is none of this crashes it or ends the process.

// A type alone, without its parts.
bool is_known_type(const llvm::Type& type);

// An instruction or constant, whatever its operands are.
bool is_known_opcode(unsigned opcode);

bool is_known_cast(const llvm::AddrSpaceCastOperator& cast);

bool is_known_atomic(llvm::AtomicRMWInst::BinOp operation);

} // namespace opencl
