// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace vexacm_tool {

struct Character {
    char32_t code;
    std::size_t length; ///< in bytes
};

constexpr char32_t REPLACEMENT = 0xFFFD;

/// The character that a text, which is not empty, starts with. A byte that
/// starts no character of UTF-8 counts as a replacement character.
Character first_character(std::string_view text);

/// U+202A and the like: they make text show in another order than it has.
bool reorders_text(char32_t code);

/// What may go to a terminal: characters that would move the cursor, start a
/// control sequence or reorder the line are replaced.
std::string terminal_line(std::string_view text);

/// The lines of a text, without those at its end that are empty.
template <typename Visit>
void for_each_line(std::string_view text, Visit visit) {
    text = text.substr(0, text.find_last_not_of("\r\n") + 1);
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size());
        visit(text.substr(0, length));
        text.remove_prefix(std::min(length + 1, text.size()));
    }
}

} // namespace vexacm_tool
