// SPDX-License-Identifier: MIT
#pragma once

#include "../batch/result.hpp"
#include "../batch/sparse_array.hpp"
#include "../batch/spool.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vexacm_tool {

/// The results of one run out of any number of files, in any order.
class Merged {
public:
    /// Takes in a file's. Throws Failure for what is no part of the same run.
    void add(const std::string& file);

    /// Call it once, when all are in: gives up the compilers that one machine would
    /// have given up. Jobs are left out that no result stands of.
    void settle();

    /// How many there are in the run; 0 before the first result.
    std::size_t jobs() const { return first_.jobs; }
    /// Of how many shards, where all that tell agree.
    std::optional<unsigned int> shards() const;
    /// How many jobs a result stands of, by shard, those with any; without shards
    /// all count for number 1.
    const std::map<unsigned int, std::size_t>& counts() const { return counts_; }

    const Spool& results() const { return spool_; }
    Exit_status exit_status() const { return exit_status_; }

private:
    struct Entry {
        std::uint32_t file = 0; ///< counted from 1; 0: there is no result
        std::uint32_t compiler = 0;
        Outcome outcome = Outcome::not_run;
    };

    void take(Result result);
    void check_run(const Result& result);
    void put(const Result& result, const std::string& line);
    std::uint32_t compiler_number(const Compiler_name& name);

    Spool spool_;
    Sparse_array<Entry> entries_; ///< of each job
    std::vector<std::string> files_;
    std::map<std::vector<std::string>, std::uint32_t> compilers_;
    Job_head first_; ///< what all others are compared with
    std::uint32_t first_file_ = 0;
    bool shards_differ_ = false;
    std::map<unsigned int, std::size_t> counts_;
    Exit_status exit_status_ = Exit_status::done;
};

} // namespace vexacm_tool
