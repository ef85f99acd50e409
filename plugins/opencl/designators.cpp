// SPDX-License-Identifier: MIT
#include "designators.hpp"

#include "number.hpp"

#include <clang/AST/Decl.h>
#include <clang/Sema/Lookup.h>
#include <clang/Sema/Sema.h>

#include <limits>
#include <optional>

namespace opencl {
namespace {

std::optional<std::uint64_t> value_of_name(clang::Sema& sema, const clang::Token& token) {
    const clang::NamedDecl* found =
        sema.LookupSingleName(sema.getCurScope(), token.getIdentifierInfo(), token.getLocation(),
                              clang::Sema::LookupOrdinaryName);
    const auto* const constant = llvm::dyn_cast_or_null<clang::EnumConstantDecl>(found);
    if (constant == nullptr)
        return std::nullopt;
    return constant->getInitVal().getLimitedValue();
}

std::optional<std::uint64_t> value_of(clang::Sema& sema, const clang::Token& token) {
    constexpr unsigned LENGTH_OF_ONE_CHARACTER = 3;
    if (token.is(clang::tok::identifier))
        return value_of_name(sema, token);
    if (token.is(clang::tok::char_constant) && token.getLength() == LENGTH_OF_ONE_CHARACTER)
        return std::numeric_limits<unsigned char>::max();
    return number_of(sema.getPreprocessor(), token);
}

} // namespace

bool Designators::accept(clang::Sema& sema, const clang::Token& token) {
    if (place_ == Place::index)
        return accept_index(sema, token);
    if (token.isOneOf(clang::tok::l_brace, clang::tok::comma))
        place_ = Place::list_item;
    else if (place_ == Place::other)
        return true;
    else if (token.is(clang::tok::l_square))
        place_ = Place::index;
    else if (token.is(clang::tok::period) ||
             (place_ == Place::designator && token.is(clang::tok::identifier)))
        place_ = Place::designator;
    else
        place_ = Place::other;
    return true;
}

bool Designators::accept_index(clang::Sema& sema, const clang::Token& token) {
    if (token.is(clang::tok::r_square)) {
        place_ = Place::designator;
        return true;
    }
    if (token.is(clang::tok::ellipsis))
        return true;
    const std::optional<std::uint64_t> value = value_of(sema, token);
    if (!value || *value > left_)
        return false;
    left_ -= *value;
    return true;
}

} // namespace opencl
