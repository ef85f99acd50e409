// SPDX-License-Identifier: MIT
#include "capture.hpp"

#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <sys/mman.h>
#include <system_error>

namespace vexacm_tool {

namespace {

constexpr std::size_t KEPT = 65536;
// One page more tells too much from just enough.
constexpr std::size_t SIZE = KEPT + 4096;

} // namespace

Capture::Capture() : file_(::memfd_create("printed", MFD_CLOEXEC | MFD_ALLOW_SEALING)) {
    if (file_.get() < 0 || ::ftruncate(file_.get(), SIZE) != 0 ||
        ::fcntl(file_.get(), F_ADD_SEALS, F_SEAL_GROW | F_SEAL_SHRINK | F_SEAL_SEAL) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot catch what is printed");
}

void Capture::catch_standard_streams() const {
    ::dup2(file_.get(), STDOUT_FILENO);
    ::dup2(file_.get(), STDERR_FILENO);
}

std::string Capture::take() const {
    const off_t end = ::lseek(file_.get(), 0, SEEK_CUR);
    if (end <= 0)
        return {};
    std::string text(std::min(static_cast<std::size_t>(end), KEPT), '\0');
    const ssize_t size = ::pread(file_.get(), text.data(), text.size(), 0);
    text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    ::lseek(file_.get(), 0, SEEK_SET);
    if (static_cast<std::size_t>(end) > KEPT)
        text += "\n[more was printed than is kept]\n";
    return text;
}

// What a plug-in left in buffers belongs to what it did up to here, and so does
// a stream that failed because too much was printed.
std::string Capture::finish_and_take() const {
    std::fflush(stdout);
    std::clearerr(stdout);
    std::clearerr(stderr);
    std::cout.clear();
    std::cerr.clear();
    std::clog.clear();
    return take();
}

} // namespace vexacm_tool
