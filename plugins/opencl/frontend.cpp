// SPDX-License-Identifier: MIT
#include "frontend.hpp"

#include "diagnostics.hpp"
#include "files.hpp"
#include "limits.hpp"
#include "pragmas.hpp"
#include "source_check.hpp"
#include "token_budget.hpp"

#include <clang/CodeGen/ModuleBuilder.h>
#include <clang/Frontend/CompilerInvocation.h>
#include <clang/Frontend/FrontendAction.h>
#include <clang/Frontend/MultiplexConsumer.h>
#include <clang/Lex/Preprocessor.h>
#include <clang/Lex/PreprocessorOptions.h>
#include <llvm/Support/raw_ostream.h>

#include <string>
#include <vector>

namespace opencl {
namespace {

class Make_module : public clang::ASTFrontendAction {
public:
    Make_module(llvm::LLVMContext& context, std::string& source)
        : context_(context), source_(source) {}

    std::unique_ptr<llvm::Module> take_module() { return std::move(module_); }

protected:
    bool BeginSourceFileAction(clang::CompilerInstance& clang) override {
        refuse_debugging_pragmas(clang.getPreprocessor());
        limit_tokens(clang, source_);
        return true;
    }

    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& clang,
                                                          llvm::StringRef file) override {
        std::unique_ptr<clang::CodeGenerator> generator(clang::CreateLLVMCodeGen(
            clang.getDiagnostics(), file, clang.getHeaderSearchOpts(), clang.getPreprocessorOpts(),
            clang.getCodeGenOpts(), context_));
        generator_ = generator.get();
        // In this order: an error that the check adds keeps the generator from going on.
        std::vector<std::unique_ptr<clang::ASTConsumer>> consumers;
        consumers.push_back(make_source_check());
        consumers.push_back(std::move(generator));
        return std::make_unique<clang::MultiplexConsumer>(std::move(consumers));
    }

    void EndSourceFileAction() override {
        if (!getCompilerInstance().getDiagnostics().hasErrorOccurred())
            module_.reset(generator_->ReleaseModule());
    }

private:
    llvm::LLVMContext& context_;
    std::string& source_;
    clang::CodeGenerator* generator_ = nullptr;
    std::unique_ptr<llvm::Module> module_;
};

void set_options(clang::CompilerInstance& clang, const Options& options) {
    const std::string max_errors = std::to_string(MAX_ERRORS);
    const char* const arguments[] = {
        "-triple", "spir64-unknown-unknown", "-x", "cl", "-cl-std=CL3.0",
        // The header declares types and constants; functions come from clang's own table, which
        // takes a small part of the time that the full header would.
        "-finclude-default-header", "-fdeclare-opencl-builtins", "-resource-dir",
        RESOURCE_DIRECTORY, "-nostdsysteminc",
        // Code as it was written, which the driver is to optimise: marking it "do not inline"
        // would be wrong.
        // Functions that are "inline" and nothing else are made as well: nobody else has them.
        "-fgnu89-inline", "-O0", "-disable-O0-optnone", "-disable-llvm-passes", //
        "-fno-gnu-inline-asm", "-disable-pragma-debug-crash", "-ferror-limit", max_errors.c_str(),
        SOURCE_FILE};
    // These arguments are right: whom it would tell what is wrong with them does not matter.
    clang.createDiagnostics(new clang::IgnoringDiagConsumer);
    clang::CompilerInvocation::CreateFromArgs(clang.getInvocation(), arguments,
                                              clang.getDiagnostics());
    // The header has this one for OpenCL C 2.0 only, although clang has the functions.
    clang.getPreprocessorOpts().addMacroDef("__opencl_c_work_group_collective_functions=1");
    for (const plugin::Definition& definition : options.definitions)
        clang.getPreprocessorOpts().addMacroDef(definition.name + "=" + definition.value);
}

} // namespace

std::unique_ptr<llvm::Module> Frontend::compile(const char* source, const Options& options,
                                                plugin::Outputs& outputs) {
    source_ = source;
    set_options(clang_, options);
    clang_.createDiagnostics(new Diagnostics(outputs));
    clang_.createFileManager(make_files(source_));
    clang_.setVerboseOutputStream(std::make_unique<llvm::raw_null_ostream>());
    Make_module action(context_, source_);
    clang_.ExecuteAction(action);
    return outputs.errors.empty() ? action.take_module() : nullptr;
}

} // namespace opencl
