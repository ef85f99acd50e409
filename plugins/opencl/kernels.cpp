// SPDX-License-Identifier: MIT
#include "kernels.hpp"

#include <llvm/ADT/SetVector.h>
#include <llvm/IR/GlobalVariable.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Module.h>

#include <cstdint>

namespace opencl {
namespace {

constexpr unsigned LOCAL_ADDRESS_SPACE = 3;

using Functions = llvm::SetVector<const llvm::Function*>;

bool is_kernel(const llvm::Function& function) {
    return function.getCallingConv() == llvm::CallingConv::SPIR_KERNEL && !function.isDeclaration();
}

// The kernel and, as the set grows, what the functions in it call.
Functions functions_of(const llvm::Function& kernel) {
    Functions functions;
    functions.insert(&kernel);
    for (unsigned i = 0; i < functions.size(); ++i) {
        for (const llvm::Instruction& instruction : llvm::instructions(*functions[i])) {
            const auto* const call = llvm::dyn_cast<llvm::CallBase>(&instruction);
            const llvm::Function* called = call == nullptr ? nullptr : call->getCalledFunction();
            if (called != nullptr && !called->isDeclaration())
                functions.insert(called);
        }
    }
    return functions;
}

bool is_used_in(const llvm::Value& value, const Functions& functions) {
    for (const llvm::User* user : value.users()) {
        const auto* const instruction = llvm::dyn_cast<llvm::Instruction>(user);
        const bool used = instruction != nullptr ? functions.count(instruction->getFunction()) != 0
                                                 : is_used_in(*user, functions);
        if (used)
            return true;
    }
    return false;
}

std::uint64_t size_of(const llvm::Module& module, llvm::Type* type) {
    return module.getDataLayout().getTypeAllocSize(type).getFixedSize();
}

std::uint64_t local_bytes(const llvm::Module& module, const Functions& functions) {
    std::uint64_t bytes = 0;
    for (const llvm::GlobalVariable& variable : module.globals()) {
        if (variable.getAddressSpace() == LOCAL_ADDRESS_SPACE && is_used_in(variable, functions))
            bytes += size_of(module, variable.getValueType());
    }
    return bytes;
}

struct Counts {
    std::uint64_t private_bytes = 0;
    std::size_t arithmetic = 0;
    std::size_t memory = 0;
    std::size_t control = 0;
    std::size_t calls = 0;

    void count(const llvm::Instruction& instruction) {
        if (const auto* const variable = llvm::dyn_cast<llvm::AllocaInst>(&instruction))
            private_bytes += size_of(*instruction.getModule(), variable->getAllocatedType());
        else if (is_memory(instruction))
            ++memory;
        else if (is_arithmetic(instruction))
            ++arithmetic;
        else if (instruction.isTerminator())
            ++control;
        else if (llvm::isa<llvm::CallBase>(instruction))
            ++calls;
    }

private:
    static bool is_memory(const llvm::Instruction& instruction) {
        return llvm::isa<llvm::LoadInst, llvm::StoreInst, llvm::AtomicRMWInst,
                         llvm::AtomicCmpXchgInst, llvm::MemIntrinsic>(instruction);
    }

    // clang writes a * b + c as a call of an intrinsic.
    static bool is_arithmetic(const llvm::Instruction& instruction) {
        return instruction.isBinaryOp() || instruction.isUnaryOp() ||
               llvm::isa<llvm::CmpInst, llvm::IntrinsicInst>(instruction);
    }
};

Counts count(const Functions& functions) {
    Counts counts;
    for (const llvm::Function* function : functions) {
        for (const llvm::Instruction& instruction : llvm::instructions(*function))
            counts.count(instruction);
    }
    return counts;
}

plugin::Texts row(const llvm::Function& kernel) {
    const Functions functions = functions_of(kernel);
    const Counts counts = count(functions);
    return {kernel.getName().str(),
            std::to_string(kernel.arg_size()),
            std::to_string(local_bytes(*kernel.getParent(), functions)),
            std::to_string(counts.private_bytes),
            std::to_string(counts.arithmetic),
            std::to_string(counts.memory),
            std::to_string(counts.control),
            std::to_string(counts.calls)};
}

} // namespace

bool has_kernel(const llvm::Module& module, const std::string& name) {
    const llvm::Function* function = module.getFunction(name);
    return function != nullptr && is_kernel(*function);
}

std::vector<plugin::Texts> kernel_table(const llvm::Module& module) {
    std::vector<plugin::Texts> table = {{"kernel", "arguments", "local bytes", "private bytes",
                                         "arithmetic", "memory", "control", "calls"}};
    for (const llvm::Function& function : module) {
        if (is_kernel(function))
            table.push_back(row(function));
    }
    return table;
}

} // namespace opencl
