// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

std::vector<std::uint32_t> words_of(const std::vector<std::uint8_t>& binary);

#ifdef SPIRV_VAL
// Expects the validator to have nothing to say.
void expect_valid(const std::vector<std::uint8_t>& binary, const char* target_environment);
#endif
