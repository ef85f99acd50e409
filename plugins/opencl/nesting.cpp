// SPDX-License-Identifier: MIT
#include "nesting.hpp"

#include "limits.hpp"

namespace opencl {

bool Nesting::accept(const clang::Token& token) {
    switch (token.getKind()) {
    case clang::tok::l_brace:
        ++braces_;
        run_ = 0;
        return true;
    case clang::tok::r_brace:
        braces_ -= braces_ > 0 ? 1 : 0;
        elses_ = braces_ > 0 ? elses_ : 0;
        run_ = 0;
        return true;
    case clang::tok::semi:
    case clang::tok::comma:
        run_ = 0;
        return true;
    case clang::tok::kw_else:
        return ++elses_ <= MAX_ELSES;
    default:
        return ++run_ <= MAX_RUN;
    }
}

} // namespace opencl
