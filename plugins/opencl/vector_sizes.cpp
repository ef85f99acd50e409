// SPDX-License-Identifier: MIT
#include "vector_sizes.hpp"

#include "number.hpp"

#include <clang/Basic/IdentifierTable.h>

#include <cstdint>
#include <optional>

namespace opencl {
namespace {

// In bytes, as one of the attributes has it: sixteen numbers of eight.
constexpr std::uint64_t MAX_VECTOR_SIZE = 128;

bool makes_vectors(const clang::Token& token) {
    if (token.isNot(clang::tok::identifier))
        return false;
    const llvm::StringRef name = token.getIdentifierInfo()->getName();
    return name.contains("vector_type") || name.contains("vector_size");
}

} // namespace

bool Vector_sizes::accept(const clang::Preprocessor& preprocessor, const clang::Token& token) {
    const Place before = place_;
    place_ = after(before, token);
    if (before == Place::number)
        return token.is(clang::tok::r_paren);
    if (before != Place::bracket)
        return true;
    const std::optional<std::uint64_t> size = number_of(preprocessor, token);
    return size && *size <= MAX_VECTOR_SIZE;
}

Vector_sizes::Place Vector_sizes::after(Place place, const clang::Token& token) {
    if (place == Place::bracket)
        return Place::number;
    if (place == Place::name && token.is(clang::tok::l_paren))
        return Place::bracket;
    if (place == Place::list && makes_vectors(token))
        return Place::name;
    return token.isOneOf(clang::tok::l_paren, clang::tok::comma) ? Place::list : Place::other;
}

} // namespace opencl
