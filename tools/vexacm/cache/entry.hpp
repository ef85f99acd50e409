// SPDX-License-Identifier: MIT
#pragma once

#include "../compiled.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace vexacm_tool {

/// A file takes whole blocks, in most file systems these.
constexpr std::uint64_t BLOCK_SIZE = 4096;
constexpr std::uint64_t blocks_of(std::uint64_t size) {
    return size / BLOCK_SIZE + (size % BLOCK_SIZE != 0);
}

/// What a compile gave, as the bytes of a file that tells whether it is whole and
/// what it was made for.
class Entry {
public:
    Entry(const std::string& key, const Compiled& compiled);

    std::uint64_t blocks() const;

    /// Writes it to an open file. 0, or the number of what went wrong.
    int write_to(int file) const;

private:
    std::string texts_; ///< the head and all but the binary
    const std::string& binary_;
};

/// Reads such a file. Nothing when there is none, when it is of another key, takes
/// more blocks than these, or is not what was written, byte for byte.
std::optional<Compiled> read_entry(const std::string& file, const std::string& key,
                                   std::uint64_t most_blocks);

} // namespace vexacm_tool
