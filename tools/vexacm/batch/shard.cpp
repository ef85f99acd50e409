// SPDX-License-Identifier: MIT
#include "shard.hpp"

#include "../failure.hpp"

#include <charconv>

namespace vexacm_tool {

Shard shard_of(const std::string& text) {
    Shard shard;
    const char* const end = text.data() + text.size();
    const auto number = std::from_chars(text.data(), end, shard.number);
    if (number.ec == std::errc{} && number.ptr != end && *number.ptr == '/') {
        const auto of = std::from_chars(number.ptr + 1, end, shard.of);
        if (of.ec == std::errc{} && of.ptr == end && shard.number >= 1 && shard.number <= shard.of)
            return shard;
    }
    throw Failure{Exit_status::wrong_use, "--shard takes I/N, with I from 1 to N"};
}

} // namespace vexacm_tool
