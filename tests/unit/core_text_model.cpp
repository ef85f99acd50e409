// SPDX-License-Identifier: MIT
#include "core_text_model.hpp"

#include <locale>
#include <sstream>

namespace {

void read_number(const std::string& piece, std::uint32_t* number) {
    std::istringstream stream(piece);
    stream.imbue(std::locale::classic());
    // A number begins with a digit. A stream would take a sign as well.
    const int first = (stream >> std::ws).peek();
    if (first == '-' || first == '+')
        *number = 0;
    else
        stream >> *number;
}

} // namespace

std::uint32_t core_number_by_stream(const std::string& display_name, std::uint32_t number) {
    std::istringstream stream(display_name);
    stream.ignore(5, '-');
    if (stream.peek() == 'K')
        stream.ignore();
    char piece[4];
    stream.get(piece, sizeof piece);
    read_number(piece, &number);
    return number;
}

std::array<std::uint32_t, 4> revision_by_stream(const std::string& revision,
                                                std::array<std::uint32_t, 4> numbers) {
    std::istringstream stream(revision);
    stream.ignore(2, 'r');
    char digit[2];
    stream.getline(digit, sizeof digit, 'p');
    read_number(digit, &numbers[0]);
    stream.getline(digit, sizeof digit, '_');
    read_number(digit, &numbers[1]);
    if (stream.eof())
        return numbers;

    char rest[7];
    stream.get(rest, sizeof rest);
    const std::string build_and_tag = rest;
    read_number(build_and_tag.substr(0, build_and_tag.find_first_of("dr")), &numbers[2]);
    const int tag_end = static_cast<int>(build_and_tag.find_first_of("vl")) + 1;
    read_number(build_and_tag.substr(static_cast<std::size_t>(tag_end), 1), &numbers[3]);
    return numbers;
}
