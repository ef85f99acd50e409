// SPDX-License-Identifier: MIT
#include "table.hpp"

#include <algorithm>

namespace vexacm_tool {

namespace {

constexpr std::size_t COLUMN_GAP = 2;

// Bytes that continue a UTF-8 character take no room of their own.
std::size_t width(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::vector<std::size_t> column_widths(const std::vector<Row>& rows) {
    std::vector<std::size_t> widths;
    for (const Row& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], width(row[column]));
    }
    return widths;
}

} // namespace

std::string one_line(const std::string& text) {
    std::string line = text;
    std::replace_if(
        line.begin(), line.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, ' ');
    return line;
}

std::string aligned(const std::vector<Row>& rows) {
    const std::vector<std::size_t> widths = column_widths(rows);
    std::string text;
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            line += one_line(row[column]);
            line.append(widths[column] - width(row[column]) + COLUMN_GAP, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}

} // namespace vexacm_tool
