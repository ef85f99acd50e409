// SPDX-License-Identifier: MIT
#pragma once

#include "limits.hpp"

#include <clang/Lex/Token.h>

#include <cstdint>

namespace clang {
class Sema;
}

namespace opencl {

// Follows the designators of initial values, such as [5] or [0 ... 9], while the parser reads
// them: for [1000000000] it would make a list of that many values at once.
class Designators {
public:
    // False where an index is not one number, character or enumerator, or where all of them
    // together are too large.
    bool accept(clang::Sema& sema, const clang::Token& token);

private:
    bool accept_index(clang::Sema& sema, const clang::Token& token);

    // The innermost thing that the last token belongs to.
    enum class Place { other, list_item, designator, index };

    Place place_ = Place::other;
    std::uint64_t left_ = MAX_DESIGNATED_ELEMENTS;
};

} // namespace opencl
