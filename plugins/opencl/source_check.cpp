// SPDX-License-Identifier: MIT
#include "source_check.hpp"

#include "limits.hpp"

#include <clang/AST/ASTContext.h>
#include <clang/AST/Attr.h>
#include <clang/AST/DeclGroup.h>
#include <clang/AST/RecursiveASTVisitor.h>
#include <clang/Basic/SourceManager.h>

#include <vector>

namespace opencl {
namespace {

class Visitor : public clang::RecursiveASTVisitor<Visitor> {
public:
    explicit Visitor(clang::ASTContext& context) : context_(context) {}

    bool VisitFunctionDecl(clang::FunctionDecl* function) {
        check_name(*function, function->hasAttr<clang::OpenCLKernelAttr>());
        functions_.push_back(function);
        return true;
    }

    bool VisitVarDecl(clang::VarDecl* variable) {
        check_name(*variable, false);
        count_bytes(variable->getLocation(), variable->getType());
        if (variable->hasExternalStorage())
            variables_.push_back(variable);
        return true;
    }

    bool VisitCompoundLiteralExpr(clang::CompoundLiteralExpr* literal) {
        count_bytes(literal->getBeginLoc(), literal->getType());
        return true;
    }

    bool VisitCaseStmt(clang::CaseStmt* statement) {
        if (statement->caseStmtIsGNURange())
            report(statement->getBeginLoc(), "a range of cases is not supported");
        return true;
    }

    bool VisitVectorTypeLoc(clang::VectorTypeLoc location) {
        const unsigned size = location.getTypePtr()->getNumElements();
        if (size != 2 && size != 3 && size != 4 && size != 8 && size != 16)
            report(location.getNameLoc(), "a vector must have 2, 3, 4, 8 or 16 elements");
        return true;
    }

    bool VisitBitIntTypeLoc(clang::BitIntTypeLoc location) {
        report(location.getNameLoc(), "'_BitInt' is not supported");
        return true;
    }

    bool dataTraverseStmtPre(clang::Stmt* statement) {
        if (++depth_ > MAX_DEPTH && !too_deep_) {
            too_deep_ = true;
            report(statement->getBeginLoc(), "the source is nested too deeply");
        }
        return true;
    }

    bool dataTraverseStmtPost(clang::Stmt*) {
        --depth_;
        return true;
    }

    // There is no linker that could find them elsewhere.
    void check_definitions() {
        for (const clang::FunctionDecl* function : functions_) {
            if (function->isReferenced() && !function->isDefined() && function->getBuiltinID() == 0)
                report(function->getLocation(), "%0 is used but not defined", function);
        }
        for (clang::VarDecl* variable : variables_) {
            if (variable->isReferenced() && !variable->hasDefinition())
                report(variable->getLocation(), "%0 is used but not defined", variable);
        }
    }

private:
    // The translator to SPIR-V tells its built-ins by their names, so that functions are given
    // others, see names.hpp; a kernel must keep its own.
    void check_name(const clang::NamedDecl& declaration, bool is_kernel) {
        if (declaration.hasAttr<clang::AsmLabelAttr>())
            report(declaration.getLocation(), "an asm label is not supported");
        if (is_kernel &&
            (declaration.getName().startswith("__") || declaration.getName().startswith("_Z")))
            report(declaration.getLocation(), "%0 is reserved and cannot be a kernel's name",
                   &declaration);
    }

    // Code for an initial value takes the size of the variable in memory.
    void count_bytes(clang::SourceLocation location, clang::QualType type) {
        if (type->isIncompleteType() || type->isDependentType() || type->isVariablyModifiedType())
            return;
        const auto bytes =
            static_cast<std::uint64_t>(context_.getTypeSizeInChars(type).getQuantity());
        if (bytes > bytes_left_)
            report(location, "the variables take more than 64 MiB");
        else
            bytes_left_ -= bytes;
    }

    template <unsigned N>
    void report(clang::SourceLocation location, const char (&message)[N],
                const clang::NamedDecl* name = nullptr) {
        clang::DiagnosticsEngine& diagnostics = context_.getDiagnostics();
        const unsigned id = diagnostics.getCustomDiagID(clang::DiagnosticsEngine::Error, message);
        const clang::DiagnosticBuilder builder = diagnostics.Report(location, id);
        if (name != nullptr)
            builder << name;
    }

    clang::ASTContext& context_;
    std::vector<const clang::FunctionDecl*> functions_;
    std::vector<clang::VarDecl*> variables_;
    std::uint64_t bytes_left_ = MAX_OBJECT_BYTES;
    unsigned depth_ = 0;
    bool too_deep_ = false;
};

class Source_check : public clang::ASTConsumer {
public:
    void Initialize(clang::ASTContext& context) override {
        visitor_ = std::make_unique<Visitor>(context);
    }

    bool HandleTopLevelDecl(clang::DeclGroupRef group) override {
        for (clang::Decl* declaration : group) {
            if (!declaration->isInvalidDecl() && is_in_source(*declaration))
                visitor_->TraverseDecl(declaration);
        }
        return true;
    }

    void HandleTranslationUnit(clang::ASTContext&) override { visitor_->check_definitions(); }

private:
    static bool is_in_source(const clang::Decl& declaration) {
        const clang::SourceManager& sources = declaration.getASTContext().getSourceManager();
        const clang::SourceLocation location = sources.getExpansionLoc(declaration.getLocation());
        return sources.getFileID(location) == sources.getMainFileID();
    }

    std::unique_ptr<Visitor> visitor_;
};

} // namespace

std::unique_ptr<clang::ASTConsumer> make_source_check() {
    return std::make_unique<Source_check>();
}

} // namespace opencl
