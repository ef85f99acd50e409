// SPDX-License-Identifier: MIT
#pragma once

#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "process.hpp"

/// Each text that the pattern's group stands for.
inline std::set<std::string> all_matches(const std::string& text, const std::string& pattern) {
    const std::regex regex(pattern);
    std::set<std::string> matches;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
        matches.insert((*match)[1]);
    return matches;
}

/// What a program prints that must succeed.
inline std::string output_of(const std::vector<std::string>& command) {
    const Process_result result = run(command);
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
}
