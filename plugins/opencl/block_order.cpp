// SPDX-License-Identifier: MIT
#include "block_order.hpp"

#include <llvm/ADT/PostOrderIterator.h>
#include <llvm/IR/CFG.h>
#include <llvm/IR/Module.h>

namespace opencl {
namespace {

// Blocks that nothing leads to stay at the end.
void order_blocks_of(llvm::Function& function) {
    const llvm::ReversePostOrderTraversal<llvm::Function*> order(&function);
    llvm::BasicBlock* previous = nullptr;
    for (llvm::BasicBlock* block : order) {
        if (previous != nullptr)
            block->moveAfter(previous);
        previous = block;
    }
}

} // namespace

void order_blocks(llvm::Module& module) {
    for (llvm::Function& function : module) {
        if (!function.isDeclaration())
            order_blocks_of(function);
    }
}

} // namespace opencl
