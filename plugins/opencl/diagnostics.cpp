// SPDX-License-Identifier: MIT
#include "diagnostics.hpp"

#include <clang/Basic/SourceManager.h>
#include <llvm/ADT/SmallString.h>

namespace opencl {
namespace {

using Level = clang::DiagnosticsEngine::Level;

const char* level_name(Level level) {
    switch (level) {
    case Level::Note:
        return "note: ";
    case Level::Warning:
        return "warning: ";
    case Level::Error:
        return "error: ";
    case Level::Fatal:
        return "fatal error: ";
    default:
        return "remark: ";
    }
}

// "12:5: ", as #line has it. A place outside the source means nothing to its author.
std::string place_of(const clang::Diagnostic& diagnostic) {
    if (!diagnostic.hasSourceManager() || diagnostic.getLocation().isInvalid())
        return {};
    const clang::SourceManager& sources = diagnostic.getSourceManager();
    const clang::SourceLocation location = sources.getExpansionLoc(diagnostic.getLocation());
    const clang::PresumedLoc place = sources.getPresumedLoc(location);
    if (place.isInvalid() || sources.getFileID(location) != sources.getMainFileID())
        return {};
    return std::to_string(place.getLine()) + ":" + std::to_string(place.getColumn()) + ": ";
}

std::string text_of(Level level, const clang::Diagnostic& diagnostic) {
    llvm::SmallString<256> message;
    diagnostic.FormatDiagnostic(message);
    return place_of(diagnostic) + level_name(level) + message.str().str();
}

} // namespace

void Diagnostics::HandleDiagnostic(Level level, const clang::Diagnostic& diagnostic) {
    DiagnosticConsumer::HandleDiagnostic(level, diagnostic);
    std::string text = text_of(level, diagnostic);
    if (level == Level::Note && latest_ != nullptr)
        latest_->append("\n").append(text);
    else if (level >= Level::Error)
        latest_ = &outputs_.errors.emplace_back(std::move(text));
    else
        latest_ = &outputs_.warnings.emplace_back(std::move(text));
}

} // namespace opencl
