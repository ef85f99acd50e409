// SPDX-License-Identifier: MIT
#pragma once

#include "batch_test.hpp"

#include <string>
#include <vector>

/// `vexacm` with a cache in the folder "cache", for now missing.
class Cache_test : public Batch_test {
protected:
    /// Prints the results in job order.
    Process_result cached(std::vector<std::string> arguments, std::string_view setup = "") const;

    /// vexacm cache ACTION cache.
    Process_result cache(std::vector<std::string> arguments) const;

    /// Where the entries lie, and what is being written.
    std::vector<std::string> entries() const { return files_with_names_of(30); }
    std::vector<std::string> unfinished() const { return files_with_names_of(20); }

    /// All that lies in a folder, with its contents.
    std::string snapshot(const std::string& folder) const;

    /// Compares two runs.
    static void expect_same(const Process_result& result, const Process_result& expected,
                            const char* file = __builtin_FILE(), int line = __builtin_LINE());

private:
    std::vector<std::string> files_with_names_of(std::size_t length) const;
};

/// What `vexacm cache` prints.
std::string cache_holds(std::size_t entries, std::size_t blocks, std::size_t unfinished = 0);
