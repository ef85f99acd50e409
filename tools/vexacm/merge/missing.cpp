// SPDX-License-Identifier: MIT
#include "missing.hpp"

#include "../streams.hpp"

#include <algorithm>

namespace vexacm_tool {

namespace {

// Who claims a million shards is not told of each.
void tell_missing_shards(unsigned int first, unsigned int last, unsigned int of) {
    if (first == last)
        tell("shard " + std::to_string(first) + " of " + std::to_string(of) + " is missing");
    else if (first < last)
        tell("shards " + std::to_string(first) + " to " + std::to_string(last) + " of " +
             std::to_string(of) + " are missing");
}

void tell_shards(const Merged& merged, unsigned int of) {
    unsigned int next = 1;
    for (const auto& [number, count] : merged.counts()) {
        tell_missing_shards(next, number - 1, of);
        next = number + 1;
        const std::size_t all = Shard{number, of}.count(merged.jobs());
        if (count < all)
            tell("shard " + std::to_string(number) + " of " + std::to_string(of) + " lacks " +
                 std::to_string(all - count) + " of " + std::to_string(all) +
                 " jobs: complete it with --resume");
    }
    // Where there are fewer jobs than shards, the last have none.
    const auto last = static_cast<unsigned int>(std::min<std::size_t>(of, merged.jobs()));
    tell_missing_shards(next, last, of);
}

} // namespace

bool tell_missing(const Merged& merged) {
    std::size_t count = 0;
    for (const auto& [number, jobs] : merged.counts())
        count += jobs;
    if (count == merged.jobs())
        return false;
    if (merged.shards())
        tell_shards(merged, *merged.shards());
    else
        tell("results are missing of " + std::to_string(merged.jobs() - count) + " of " +
             std::to_string(merged.jobs()) + " jobs: complete them with --resume");
    return true;
}

} // namespace vexacm_tool
