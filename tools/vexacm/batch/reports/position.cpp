// SPDX-License-Identifier: MIT
#include "position.hpp"

#include <algorithm>
#include <charconv>

namespace vexacm_tool {

namespace {

// Each takes what it reads off the front of the text, or leaves the text alone.

bool take(std::string_view& text, std::string_view start) {
    if (text.substr(0, start.size()) != start)
        return false;
    text.remove_prefix(start.size());
    return true;
}

template <typename... Starts>
bool take_one_of(std::string_view& text, Starts... starts) {
    return (take(text, starts) || ...);
}

// "12:". Nothing is counted from 0.
std::optional<unsigned int> take_number(std::string_view& text) {
    constexpr unsigned int HIGHEST = 0x7FFFFFFF; // what readers of reports can hold
    unsigned int number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || number == 0 || number > HIGHEST || rest == end || *rest != ':')
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(rest - text.data()) + 1);
    return number;
}

std::optional<Position> glslang_position(std::string_view text) {
    if (!take_one_of(text,
                     "ERROR: ", "WARNING: ", "NOTE: ", "INTERNAL ERROR: ", "UNIMPLEMENTED: ") ||
        !take(text, "0:"))
        return std::nullopt;
    const auto line = take_number(text);
    if (!line)
        return std::nullopt;
    const auto column = take_number(text);
    return take(text, " ") ? std::optional<Position>({*line, column}) : std::nullopt;
}

std::optional<Position> clang_position(std::string_view text) {
    std::string_view with_file = text;
    auto line = take_number(text);
    if (!line) {
        with_file.remove_prefix(std::min(with_file.find(':'), with_file.size()));
        if (!take(with_file, ":"))
            return std::nullopt;
        text = with_file;
        line = take_number(text);
    }
    const auto column = line ? take_number(text) : std::nullopt;
    if (!column ||
        !take_one_of(text, " error: ", " fatal error: ", " warning: ", " note: ", " remark: "))
        return std::nullopt;
    return Position{*line, column};
}

} // namespace

std::optional<Position> position_of(std::string_view diagnostic) {
    diagnostic = diagnostic.substr(0, diagnostic.find('\n'));
    const auto position = glslang_position(diagnostic);
    return position ? position : clang_position(diagnostic);
}

} // namespace vexacm_tool
