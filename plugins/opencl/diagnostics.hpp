// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"

#include <clang/Basic/Diagnostic.h>

#include <string>

namespace opencl {

// Gathers what clang has to say about a source: one text for each error or warning with its notes.
class Diagnostics : public clang::DiagnosticConsumer {
public:
    explicit Diagnostics(plugin::Outputs& outputs) : outputs_(outputs) {}

    void HandleDiagnostic(clang::DiagnosticsEngine::Level level,
                          const clang::Diagnostic& diagnostic) override;

private:
    plugin::Outputs& outputs_;
    std::string* latest_ = nullptr;
};

} // namespace opencl
