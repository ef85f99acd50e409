// SPDX-License-Identifier: MIT
#include "hexadecimal.hpp"

#include <charconv>

namespace vexacm_tool {

std::string hexadecimal(std::string_view bytes) {
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string digits;
    for (const char byte : bytes) {
        digits += DIGITS[static_cast<unsigned char>(byte) >> 4];
        digits += DIGITS[static_cast<unsigned char>(byte) & 15];
    }
    return digits;
}

std::string bytes_of_hexadecimal(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        unsigned char byte = 0;
        std::from_chars(digits.data() + i, digits.data() + i + 2, byte, 16);
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

} // namespace vexacm_tool
