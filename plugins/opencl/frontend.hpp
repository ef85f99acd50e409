// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"
#include "options.hpp"

#include <clang/Frontend/CompilerInstance.h>
#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Module.h>

#include <memory>
#include <string>

namespace opencl {

// From the source to LLVM's intermediate representation, for one compile.
class Frontend {
public:
    // Nothing when the source has errors; they are added to the outputs, like warnings. The module
    // must go before this.
    std::unique_ptr<llvm::Module> compile(const char* source, const Options& options,
                                          plugin::Outputs& outputs);

private:
    std::string source_;
    llvm::LLVMContext context_;
    clang::CompilerInstance clang_;
};

} // namespace opencl
