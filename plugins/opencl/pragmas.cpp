// SPDX-License-Identifier: MIT
#include "pragmas.hpp"

#include <clang/Basic/Diagnostic.h>
#include <clang/Lex/Pragma.h>
#include <clang/Lex/Preprocessor.h>

namespace opencl {
namespace {

class Refuse_pragma : public clang::PragmaHandler {
public:
    using PragmaHandler::PragmaHandler;

    void HandlePragma(clang::Preprocessor& preprocessor, clang::PragmaIntroducer,
                      clang::Token& name) override {
        clang::DiagnosticsEngine& diagnostics = preprocessor.getDiagnostics();
        const unsigned id = diagnostics.getCustomDiagID(clang::DiagnosticsEngine::Error,
                                                        "'#pragma clang %0' is not supported");
        diagnostics.Report(name.getLocation(), id) << getName();
    }
};

} // namespace

// The preprocessor owns its handlers; one of the same name takes the place of the one before.
void refuse_debugging_pragmas(clang::Preprocessor& preprocessor) {
    for (const char* name : {"__debug", "module"})
        preprocessor.AddPragmaHandler("clang", new Refuse_pragma(name));
}

} // namespace opencl
