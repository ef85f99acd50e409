// SPDX-License-Identifier: MIT
#include "common/definition.hpp"

#include <algorithm>

namespace plugin {
namespace {

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool is_letter_or_digit(char c) {
    return is_letter(c) || (c >= '0' && c <= '9');
}

bool is_name(std::string_view text) {
    return !text.empty() && is_letter(text.front()) &&
           std::all_of(text.begin(), text.end(), is_letter_or_digit);
}

// Whatever would not stay within its line: a line end, one that is taken back by a backslash, and
// a comment, which would run on into the source.
bool fits_a_line(std::string_view text) {
    return text.find_first_of("\n\r\\") == std::string_view::npos &&
           text.find("/*") == std::string_view::npos;
}

} // namespace

std::optional<Definition> read_definition(std::string_view text) {
    const std::size_t equals = text.find('=');
    const std::string_view name = text.substr(0, equals);
    const std::string_view value = equals == std::string_view::npos ? "1" : text.substr(equals + 1);
    if (!is_name(name) || !fits_a_line(value))
        return std::nullopt;
    return Definition{std::string(name), std::string(value)};
}

} // namespace plugin
