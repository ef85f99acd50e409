// SPDX-License-Identifier: MIT
#include "source_file.hpp"

#include "descriptor.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace vexacm_tool {

std::string read_source_file(const std::string& file) {
    const auto fail = [](int error) { throw Unreadable(std::strerror(error)); };
    const Descriptor in{::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    struct stat status {};
    if (in.get() < 0 || ::fstat(in.get(), &status) != 0)
        fail(errno);
    if (S_ISDIR(status.st_mode))
        fail(EISDIR);
    if (!S_ISREG(status.st_mode))
        throw Unreadable("no regular file");
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t size = 0;
    for (;;) {
        if (size == text.size())
            text.resize(size + 4096);
        const ssize_t count = ::read(in.get(), text.data() + size, text.size() - size);
        if (count < 0)
            fail(errno);
        if (count == 0)
            break;
        size += static_cast<std::size_t>(count);
    }
    text.resize(size);
    // The library takes NUL-terminated text: the rest would be left out unnoticed.
    if (text.find('\0') != std::string::npos)
        throw Unreadable("it has NUL bytes");
    return text;
}

} // namespace vexacm_tool
