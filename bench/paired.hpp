// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

/// Two ways to do one thing, timed in turn. What disturbs the machine disturbs
/// both, and the median of the ratios of neighbours leaves out what hit but one.
/// Every comparison prints one line of JSON, which bench/report.py reads.
namespace paired {

/// Seconds of a processor that this process and its ended children have had, in
/// the system's calls too: what others on the machine use does not count.
double processor_seconds();

/// Does its work that many times and returns the seconds that took.
using Slice = std::function<double(std::size_t times)>;

/// Keeps the compiler from dropping work whose result nobody reads.
template <class Value>
void keep(const Value& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

/// A slice of a work that needs nothing untimed between two rounds.
template <class Work>
Slice slice_of(Work work) {
    return [work](std::size_t times) mutable {
        const double start = processor_seconds();
        for (; times > 0; --times)
            work();
        return processor_seconds() - start;
    };
}

/// Times both for about `seconds`, at least five rounds. `size` is what the work
/// grows with.
void compare(std::string_view row, double size, const Slice& library, const Slice& floor,
             double seconds = 0.5);

} // namespace paired
