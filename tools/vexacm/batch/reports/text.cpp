// SPDX-License-Identifier: MIT
#include "text.hpp"

namespace vexacm_tool {

namespace {

constexpr Character NO_CHARACTER{REPLACEMENT, 1};

// The length that a first byte announces, 0 for one that is none.
std::size_t announced_length(unsigned char first) {
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first < 0xE0)
        return 2;
    if (first >= 0xE0 && first < 0xF0)
        return 3;
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

// Longer than need be, half of a pair of UTF-16, or beyond the last.
bool is_malformed(char32_t code, std::size_t length) {
    return (length == 3 && code < 0x800) || (length == 4 && code < 0x10000) || code > 0x10FFFF ||
           (code >= 0xD800 && code < 0xE000);
}

bool is_control(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

} // namespace

Character first_character(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t length = announced_length(first);
    if (length == 0 || length > text.size())
        return NO_CHARACTER;
    char32_t code = length == 1 ? first : first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0U) != 0x80)
            return NO_CHARACTER;
        code = (code << 6U) | (next & 0x3FU);
    }
    return is_malformed(code, length) ? NO_CHARACTER : Character{code, length};
}

bool reorders_text(char32_t code) {
    return code == 0x061C || code == 0x200E || code == 0x200F ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

std::string terminal_line(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const auto [code, length] = first_character(text);
        if (is_control(code))
            line += ' ';
        else if (code == REPLACEMENT || reorders_text(code))
            line += "\uFFFD";
        else
            line += text.substr(0, length);
        text.remove_prefix(length);
    }
    return line;
}

} // namespace vexacm_tool
