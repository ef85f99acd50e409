// SPDX-License-Identifier: MIT
#include "selects.hpp"

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>

namespace opencl {
namespace {

void widen(llvm::SelectInst& select) {
    const auto* const type = llvm::dyn_cast<llvm::FixedVectorType>(select.getType());
    if (type == nullptr || select.getCondition()->getType()->isVectorTy())
        return;
    llvm::IRBuilder<> builder(&select);
    select.setCondition(builder.CreateVectorSplat(type->getNumElements(), select.getCondition()));
}

} // namespace

void widen_selects(llvm::Module& module) {
    for (llvm::Function& function : module) {
        for (llvm::Instruction& instruction : llvm::instructions(function)) {
            if (auto* const select = llvm::dyn_cast<llvm::SelectInst>(&instruction))
                widen(*select);
        }
    }
}

} // namespace opencl
