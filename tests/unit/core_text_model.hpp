// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>

/// The reading of core names and revisions as their rules put it: with the
/// input streams of the standard library, in the classic locale. What a reading
/// leaves alone keeps its value.
std::uint32_t core_number_by_stream(const std::string& display_name, std::uint32_t number);
std::array<std::uint32_t, 4> revision_by_stream(const std::string& revision,
                                                std::array<std::uint32_t, 4> numbers);
