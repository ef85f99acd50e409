// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

/// std::stoi, whose exceptions say "stoi" with every standard library.
inline int standard_stoi(const std::string& text) {
    try {
        return std::stoi(text);
    } catch (const std::invalid_argument&) {
        throw std::invalid_argument("stoi");
    } catch (const std::out_of_range&) {
        throw std::out_of_range("stoi");
    }
}
