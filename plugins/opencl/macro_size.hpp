// SPDX-License-Identifier: MIT
#pragma once

#include <llvm/ADT/ArrayRef.h>

#include <cstddef>
#include <vector>

namespace clang {
class MacroInfo;
class Preprocessor;
class Token;
} // namespace clang

namespace opencl {

using Tokens = llvm::ArrayRef<clang::Token>;

// The number of tokens that an expansion takes, those that come and go on the way included, so
// that it measures time as well as memory; no exact number once it is beyond the limit. Arguments
// are given as they stand in the source.
std::size_t macro_size(clang::Preprocessor& preprocessor, const clang::MacroInfo& macro,
                       const std::vector<Tokens>& arguments, std::size_t limit);

} // namespace opencl
