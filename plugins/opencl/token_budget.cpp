// SPDX-License-Identifier: MIT
#include "token_budget.hpp"

#include "designators.hpp"
#include "limits.hpp"
#include "macro_size.hpp"
#include "nesting.hpp"
#include "vector_sizes.hpp"

#include <clang/Basic/SourceManager.h>
#include <clang/Frontend/CompilerInstance.h>
#include <clang/Lex/MacroArgs.h>
#include <clang/Lex/MacroInfo.h>
#include <clang/Lex/PPCallbacks.h>
#include <clang/Lex/Preprocessor.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace opencl {
namespace {

class Source_end {
public:
    Source_end(clang::Preprocessor& preprocessor, std::string& source)
        : preprocessor_(preprocessor), source_(source) {}

    bool came() const { return came_; }

    // The preprocessor can be made to stop in no other way than by taking away what it still has
    // to read.
    template <unsigned N>
    void bring(clang::SourceLocation location, const char (&message)[N]) {
        clang::DiagnosticsEngine& diagnostics = preprocessor_.getDiagnostics();
        diagnostics.Report(location,
                           diagnostics.getCustomDiagID(clang::DiagnosticsEngine::Fatal, message));
        std::fill(source_.begin() + offset_of(location), source_.end(), ' ');
        came_ = true;
    }

private:
    std::ptrdiff_t offset_of(clang::SourceLocation location) const {
        const clang::SourceManager& sources = preprocessor_.getSourceManager();
        const auto [file, offset] = sources.getDecomposedExpansionLoc(location);
        return file == sources.getMainFileID() ? static_cast<std::ptrdiff_t>(offset) : 0;
    }

    clang::Preprocessor& preprocessor_;
    std::string& source_;
    bool came_ = false;
};

using Shared_end = std::shared_ptr<Source_end>;

std::vector<Tokens> arguments_of(const clang::MacroArgs* arguments) {
    std::vector<Tokens> all;
    const unsigned count = arguments == nullptr ? 0 : arguments->getNumMacroArguments();
    for (unsigned i = 0; i < count; ++i) {
        const clang::Token* first = arguments->getUnexpArgument(i);
        all.emplace_back(first, clang::MacroArgs::getArgLength(first));
    }
    return all;
}

class Macro_budget : public clang::PPCallbacks {
public:
    Macro_budget(clang::Preprocessor& preprocessor, Shared_end end)
        : preprocessor_(preprocessor), end_(std::move(end)) {}

    void MacroExpands(const clang::Token& name, const clang::MacroDefinition& definition,
                      clang::SourceRange, const clang::MacroArgs* given) override {
        const clang::MacroInfo& macro = *definition.getMacroInfo();
        const std::vector<Tokens> arguments = arguments_of(given);
        if (!end_->came() && !spend(macro, arguments))
            end_->bring(name.getLocation(), "macros expand to too many tokens");
        if (end_->came())
            defuse(macro, arguments);
    }

private:
    bool spend(const clang::MacroInfo& macro, const std::vector<Tokens>& arguments) {
        if (!preprocessor_.isParsingIfOrElifDirective())
            left_in_condition_ = MAX_CONDITION_TOKENS;
        std::size_t& left = preprocessor_.isParsingIfOrElifDirective() ? left_in_condition_ : left_;
        const std::size_t size = macro_size(preprocessor_, macro, arguments, left);
        if (size > left)
            return false;
        left -= size;
        return true;
    }

    // clang goes on with this expansion all the same, but gets no further than this.
    static void defuse(const clang::MacroInfo& macro, const std::vector<Tokens>& arguments) {
        for (const clang::Token& token : macro.tokens())
            const_cast<clang::Token&>(token).setFlag(clang::Token::DisableExpand);
        for (const Tokens argument : arguments) {
            for (const clang::Token& token : argument)
                const_cast<clang::Token&>(token).setKind(clang::tok::eof);
        }
    }

    clang::Preprocessor& preprocessor_;
    Shared_end end_;
    std::size_t left_ = MAX_MACRO_TOKENS;
    std::size_t left_in_condition_ = MAX_CONDITION_TOKENS;
};

class Token_watcher {
public:
    Token_watcher(clang::CompilerInstance& clang, Shared_end end)
        : clang_(clang), end_(std::move(end)) {}

    void operator()(const clang::Token& token) {
        if (!end_->came())
            check(token);
        if (end_->came())
            make_last(const_cast<clang::Token&>(token));
    }

private:
    void check(const clang::Token& token) {
        if (++count_ > MAX_TOKENS)
            end_->bring(token.getLocation(), "the source has too many tokens");
        else if (token.is(clang::tok::identifier) && token.getLength() > MAX_NAME_LENGTH)
            end_->bring(token.getLocation(), "a name is too long");
        else if (token.is(clang::tok::identifier) && crashes_clang(*token.getIdentifierInfo()))
            end_->bring(token.getLocation(), "this built-in is not supported");
        else if (!nesting_.accept(token))
            end_->bring(token.getLocation(), "the statement is too long");
        else if (!vector_sizes_.accept(clang_.getPreprocessor(), token))
            end_->bring(token.getLocation(), "a vector's size must be a plain small number");
        else if (clang_.hasSema() && !designators_.accept(clang_.getSema(), token))
            end_->bring(token.getLocation(),
                        "an index in an initial value must be a plain small number");
    }

    // It looks at arguments before it knows that they are pointers.
    static bool crashes_clang(const clang::IdentifierInfo& name) {
        return name.isStr("__builtin_memcpy_inline");
    }

    // Tokens of a macro can still come; the parser is not to see them.
    static void make_last(clang::Token& token) {
        const clang::SourceLocation location = token.getLocation();
        token.startToken();
        token.setKind(clang::tok::eof);
        token.setLocation(location);
    }

    clang::CompilerInstance& clang_;
    Shared_end end_;
    Nesting nesting_;
    Vector_sizes vector_sizes_;
    Designators designators_;
    unsigned count_ = 0;
};

} // namespace

void limit_tokens(clang::CompilerInstance& clang, std::string& source) {
    clang::Preprocessor& preprocessor = clang.getPreprocessor();
    const auto end = std::make_shared<Source_end>(preprocessor, source);
    preprocessor.addPPCallbacks(std::make_unique<Macro_budget>(preprocessor, end));
    preprocessor.setTokenWatcher(Token_watcher(clang, end));
}

} // namespace opencl
