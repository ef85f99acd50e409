// SPDX-License-Identifier: MIT
#include "files.hpp"

#include <llvm/Support/MemoryBuffer.h>

namespace opencl {
namespace {

const char BASE_HEADER[] = {
#include "opencl_c_base.inc"
    '\0'};

} // namespace

llvm::IntrusiveRefCntPtr<llvm::vfs::FileSystem> make_files(const std::string& source) {
    auto* const files = new llvm::vfs::InMemoryFileSystem;
    const llvm::StringRef header(BASE_HEADER, sizeof BASE_HEADER - 1);
    files->addFile(std::string(RESOURCE_DIRECTORY) + "/include/opencl-c-base.h", 0,
                   llvm::MemoryBuffer::getMemBuffer(header));
    files->addFile(SOURCE_FILE, 0, llvm::MemoryBuffer::getMemBuffer(source));
    return files;
}

} // namespace opencl
