// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <map>

namespace vexacm_tool {

/// An array without an end, of which memory holds what was written and little
/// more, whatever the numbers are. The rest has default values.
template <class Value>
class Sparse_array {
public:
    Value& operator[](std::size_t number) { return blocks_[number / SIZE][number % SIZE]; }

    Value at(std::size_t number) const {
        const auto block = blocks_.find(number / SIZE);
        return block != blocks_.end() ? block->second[number % SIZE] : Value{};
    }

    /// Visits, in order, at least all that were written.
    template <class Visit>
    void for_each(Visit visit) const {
        for (const auto& [number, block] : blocks_)
            for (std::size_t i = 0; i < SIZE; ++i)
                visit(number * SIZE + i, block[i]);
    }

private:
    static constexpr std::size_t SIZE = 64;

    std::map<std::size_t, std::array<Value, SIZE>> blocks_;
};

} // namespace vexacm_tool
