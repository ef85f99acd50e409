// SPDX-License-Identifier: MIT
#pragma once

namespace clang {
class Preprocessor;
}

namespace opencl {

// Makes errors of the pragmas that are for those who work on clang: they print, crash on purpose
// or compile modules on the side.
void refuse_debugging_pragmas(clang::Preprocessor& preprocessor);

} // namespace opencl
