// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <iostream>
#include <string>
#include <string_view>

namespace VexaCM {

/// Writes one line to standard error, with its newline in one piece, flushed.
///
/// The line goes through the buffer of std::cerr and not through the stream, so
/// that flags, a failed state or a locale that the host left there change
/// nothing; a stream of its own takes the exceptions of a host's buffer. Short
/// lines are composed on the stack: a constant text allocates nothing and can be
/// told when memory has run out.
inline void report_parts(std::initializer_list<std::string_view> parts) {
    std::size_t size = 1;
    for (std::string_view part : parts)
        size += part.size();

    char short_line[512];
    std::string long_line;
    char* line = short_line;
    if (size > sizeof short_line) {
        long_line.resize(size);
        line = long_line.data();
    }

    char* end = line;
    for (std::string_view part : parts)
        end += part.copy(end, part.size());
    *end = '\n';

    std::ostream(std::cerr.rdbuf()).write(line, static_cast<std::streamsize>(size)).flush();
}

/// The one way in which the library speaks; numbers are passed as texts.
template <class... Parts>
void report_line(const Parts&... parts) {
    report_parts({std::string_view(parts)...});
}

} // namespace VexaCM
