// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct XXH3_state_s;

namespace vexacm_tool {

/// Stands for everything that was put into it, in 128 bits: whatever differs gets
/// another one, but for chance and for those who set out to make two alike.
class Digest {
public:
    Digest();

    // Each text counts with its length: "a" and "bc" are not "ab" and "c".
    Digest& add(std::string_view text);
    Digest& add(std::uint64_t number);
    Digest& add(const std::vector<std::string>& texts);

    /// In 32 hexadecimal digits.
    std::string text() const;

private:
    struct Free {
        void operator()(XXH3_state_s* state) const;
    };
    std::unique_ptr<XXH3_state_s, Free> state_;
};

} // namespace vexacm_tool
