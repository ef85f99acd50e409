// SPDX-License-Identifier: MIT
#pragma once

#include <clang/AST/ASTConsumer.h>

#include <memory>

namespace opencl {

// Looks at each declaration before code is made of it and refuses what clang accepts although
// SPIR-V cannot express it, and what would take too much memory.
std::unique_ptr<clang::ASTConsumer> make_source_check();

} // namespace opencl
