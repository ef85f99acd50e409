// SPDX-License-Identifier: MIT
#include "number.hpp"

#include <clang/Lex/Preprocessor.h>

#include <string>

namespace opencl {

std::optional<std::uint64_t> number_of(const clang::Preprocessor& preprocessor,
                                       const clang::Token& token) {
    std::uint64_t value = 0;
    if (token.isNot(clang::tok::numeric_constant))
        return std::nullopt;
    const std::string spelling = preprocessor.getSpelling(token);
    if (llvm::StringRef(spelling).rtrim("uUlL").getAsInteger(0, value))
        return std::nullopt;
    return value;
}

} // namespace opencl
