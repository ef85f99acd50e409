// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace clang {
class CompilerInstance;
}

namespace opencl {

// Ends the source with a fatal error where it has more of something than limits.hpp allows:
// tokens, tokens that macros would expand to, characters of a name, elements that an initial value
// names. The source is the text that the preprocessor reads.
void limit_tokens(clang::CompilerInstance& clang, std::string& source);

} // namespace opencl
