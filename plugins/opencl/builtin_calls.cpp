// SPDX-License-Identifier: MIT
#include "builtin_calls.hpp"

#include <llvm/ADT/STLExtras.h>
#include <llvm/Demangle/Demangle.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Intrinsics.h>

#include <cstdint>
#include <string>

namespace opencl {
namespace {

bool is_known_intrinsic(llvm::Intrinsic::ID id) {
    switch (id) {
    case llvm::Intrinsic::memcpy:
    case llvm::Intrinsic::memset:
    case llvm::Intrinsic::fmuladd:
    case llvm::Intrinsic::lifetime_start:
    case llvm::Intrinsic::lifetime_end:
        return true;
    default:
        return false;
    }
}

bool has_constant_arguments(const llvm::CallInst& call) {
    return llvm::all_of(call.args(), [](const llvm::Use& argument) {
        return llvm::isa<llvm::ConstantInt>(argument);
    });
}

bool compares_numbers_with_fraction(const llvm::CallInst& call) {
    return llvm::any_of(call.args(), [](const llvm::Use& argument) {
        return argument->getType()->isFloatingPointTy();
    });
}

// Addressing modes end at 4; a filter is 1 or 2.
bool is_sampler(const llvm::CallInst& call) {
    const auto* const value = llvm::dyn_cast<llvm::ConstantInt>(call.getArgOperand(0));
    if (value == nullptr)
        return false;
    const std::uint64_t bits = value->getZExtValue();
    const std::uint64_t addressing = (bits >> 1U) & 7U;
    const std::uint64_t filter = bits >> 4U;
    return addressing <= 4 && (filter == 1 || filter == 2);
}

// Functions of C that clang calls on its own behalf, such as memcmp and __atomic_load, are nowhere.
bool is_opencl_builtin(llvm::StringRef name) {
    return name.startswith("_Z") || name == "printf" ||
           (name.startswith("__") && !name.startswith("__atomic_"));
}

bool is_memory_order(std::uint64_t value) {
    constexpr std::uint64_t SEQUENTIALLY_CONSISTENT = 5;
    constexpr std::uint64_t CONSUME = 1; // which OpenCL has not
    return value <= SEQUENTIALLY_CONSISTENT && value != CONSUME;
}

bool is_memory_scope(std::uint64_t value) {
    constexpr std::uint64_t SUB_GROUP = 4;
    return value <= SUB_GROUP;
}

bool is_known_memory_argument(const llvm::Value& argument, llvm::StringRef type) {
    const auto* const constant = llvm::dyn_cast<llvm::ConstantInt>(&argument);
    if (constant == nullptr)
        return true;
    const std::uint64_t value = constant->getZExtValue();
    return (type != "memory_order" || is_memory_order(value)) &&
           (type != "memory_scope" || is_memory_scope(value));
}

// The types of the parameters stand in the name.
bool has_known_memory_arguments(const llvm::CallInst& call, llvm::StringRef name) {
    const std::string signature = llvm::demangle(name.str());
    llvm::StringRef types = llvm::StringRef(signature).split('(').second;
    types.consume_back(")");
    for (const llvm::Use& argument : call.args()) {
        const auto [type, rest] = types.split(", ");
        if (!is_known_memory_argument(*argument, type))
            return false;
        types = rest;
    }
    return true;
}

// The names are mangled.
bool fits_builtin(const llvm::CallInst& call, llvm::StringRef name) {
    if (!is_opencl_builtin(name))
        return false;
    if (name == SAMPLER)
        return is_sampler(call);
    if (name.contains("memory_") && !has_known_memory_arguments(call, name))
        return false;
    if (name.contains("mem_fence") || name.contains("item_fence") || name.contains("barrier"))
        return has_constant_arguments(call);
    return !name.contains("atomic_compare_exchange") || !compares_numbers_with_fraction(call);
}

} // namespace

bool is_known_call(const llvm::CallInst& call, const llvm::Function& called) {
    return called.isIntrinsic() ? is_known_intrinsic(called.getIntrinsicID())
                                : fits_builtin(call, called.getName());
}

} // namespace opencl
