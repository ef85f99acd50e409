// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace vexacm_tool {

/// A part of a run: of every `of` jobs in a row the `number`th. The whole run is
/// one of one.
struct Shard {
    unsigned int number = 1;
    unsigned int of = 1;

    std::size_t first() const { return number - 1; }
    bool has(std::size_t job) const { return job % of == first(); }

    /// How many of so many jobs it has.
    std::size_t count(std::size_t jobs) const {
        return jobs > first() ? (jobs - number) / of + 1 : 0;
    }
};

/// Reads "I/N". Throws Failure.
Shard shard_of(const std::string& text);

} // namespace vexacm_tool
