// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <stdexcept>

#include "vexaoc.h"

/// How texts and lists that a plug-in reports are read. Plug-ins are other
/// people's code: what they leave null or unfinished has one safe reading each.
namespace VexaCM {

/// A null text reads as the empty text.
inline const char* text_or_empty(const char* text) {
    return text ? text : "";
}

/// A null list reads as empty, whatever the count beside it says.
template <class Element>
std::uint32_t list_length(std::uint32_t count, const Element* list) {
    return list ? count : 0;
}

/// Calls visit(key, value) for each pair of a capability record. A key at the
/// end that lacks its value is ignored.
template <class Visit>
void for_each_capability(const vexaoc_capabilities& capabilities, Visit visit) {
    const std::size_t length = list_length(capabilities.num_entries, capabilities.entries);
    for (std::size_t key = 0; key + 1 < length; key += 2)
        visit(text_or_empty(capabilities.entries[key]),
              text_or_empty(capabilities.entries[key + 1]));
}

/// Converts as std::stoi does. The standard leaves the wording of its
/// exceptions open, and users see it: here it is "stoi" with every library.
inline int to_int(const char* text) {
    char* end = nullptr;
    // What does not even fit a long comes back as the nearest one, out of range.
    const long number = std::strtol(text, &end, 10);
    if (end == text)
        throw std::invalid_argument("stoi");
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
        throw std::out_of_range("stoi");
    return static_cast<int>(number);
}

/// Reads up to three numbers with points between them, and returns how many there
/// are: what std::sscanf does with "%d.%d.%d", or with "%u.%u.%u" where `convert`
/// is std::strtoul, for a fifth of the cost.
template <class Number, class Convert>
int read_version(const char* text, Number (&numbers)[3], Convert convert) {
    int count = 0;
    for (Number& number : numbers) {
        char* end = nullptr;
        const auto converted = convert(text, &end, 10);
        if (end == text)
            break;
        number = static_cast<Number>(converted);
        ++count;
        if (*end != '.')
            break;
        text = end + 1;
    }
    return count;
}

} // namespace VexaCM
