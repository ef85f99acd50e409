// SPDX-License-Identifier: MIT
#pragma once

#include <llvm/ADT/IntrusiveRefCntPtr.h>
#include <llvm/Support/VirtualFileSystem.h>

#include <string>

namespace opencl {

constexpr const char* SOURCE_FILE = "/kernel.cl";
constexpr const char* RESOURCE_DIRECTORY = "/clang";

// All the files that a compile can see, in memory: the source and the header that clang includes
// by itself. No source can read a file of the machine. The source is not copied.
llvm::IntrusiveRefCntPtr<llvm::vfs::FileSystem> make_files(const std::string& source);

} // namespace opencl
