// SPDX-License-Identifier: MIT
#include "names.hpp"

#include <llvm/IR/Module.h>

namespace opencl {
namespace {

bool is_reserved(llvm::StringRef name) {
    return name.startswith("__") || name.startswith("_Z");
}

// A kernel with such a name is one that clang itself made of a block.
bool is_kernel(const llvm::GlobalObject& object) {
    const auto* const function = llvm::dyn_cast<llvm::Function>(&object);
    return function != nullptr && function->getCallingConv() == llvm::CallingConv::SPIR_KERNEL;
}

void rename(llvm::GlobalObject& object) {
    if (!object.isDeclaration() && !is_kernel(object) && is_reserved(object.getName()))
        object.setName("own." + object.getName());
}

} // namespace

void make_names_plain(llvm::Module& module) {
    for (llvm::GlobalObject& object : module.global_objects())
        rename(object);
}

} // namespace opencl
