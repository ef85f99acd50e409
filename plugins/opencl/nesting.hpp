// SPDX-License-Identifier: MIT
#pragma once

#include <clang/Lex/Token.h>

namespace opencl {

// Follows how deep the parser may be, which clang limits for brackets only: each token of "- - - x"
// is a level, and so is each "else" of a chain.
class Nesting {
public:
    // False where it may be too deep.
    bool accept(const clang::Token& token);

private:
    unsigned run_ = 0;    // tokens of the statement or the list's item that is being read
    unsigned braces_ = 0; // that are open
    unsigned elses_ = 0;  // in the outermost of them
};

} // namespace opencl
