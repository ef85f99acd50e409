// SPDX-License-Identifier: MIT
#include "spirv.hpp"

#include "process.hpp"

#include <gtest/gtest.h>

#include <cstring>

std::vector<std::uint32_t> words_of(const std::vector<std::uint8_t>& binary) {
    std::vector<std::uint32_t> words(binary.size() / sizeof(std::uint32_t));
    std::memcpy(words.data(), binary.data(), words.size() * sizeof(std::uint32_t));
    return words;
}

#ifdef SPIRV_VAL
void expect_valid(const std::vector<std::uint8_t>& binary, const char* target_environment) {
    const Process_result result =
        run({SPIRV_VAL, "--target-env", target_environment, "-"},
            {reinterpret_cast<const char*>(binary.data()), binary.size()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}
#endif
