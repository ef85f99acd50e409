// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

namespace clang {
class Preprocessor;
class Token;
} // namespace clang

namespace opencl {

// The value of a token that is a whole number.
std::optional<std::uint64_t> number_of(const clang::Preprocessor& preprocessor,
                                       const clang::Token& token);

} // namespace opencl
