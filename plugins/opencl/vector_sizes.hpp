// SPDX-License-Identifier: MIT
#pragma once

#include <clang/Lex/Token.h>

namespace clang {
class Preprocessor;
}

namespace opencl {

// Follows the attributes that make vectors while the parser reads them: clang itself does not
// survive some of the larger sizes.
class Vector_sizes {
public:
    // False where a size is not told by one small number.
    bool accept(const clang::Preprocessor& preprocessor, const clang::Token& token);

private:
    // What the last token was: "(" or "," that an attribute may follow, its name, the "(" behind
    // it, the size in that.
    enum class Place { other, list, name, bracket, number };

    static Place after(Place place, const clang::Token& token);

    Place place_ = Place::other;
};

} // namespace opencl
