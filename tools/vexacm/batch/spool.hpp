// SPDX-License-Identifier: MIT
#pragma once

#include "descriptor.hpp"
#include "result.hpp"
#include "sparse_array.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace vexacm_tool {

/// The lines of all results, in a file without a name: only where they stand is
/// kept in memory. Throws Failure when the disk is full.
class Spool : public Result_source {
public:
    Spool();

    /// Keeps the line of a job's result; the last one counts.
    void put(std::size_t job, std::string_view line);
    std::string line(std::size_t job) const;

    /// Visits the results of the jobs that have one.
    void for_each(const std::function<void(const Result&)>& visit) const override;
    void for_each_line(const std::function<void(const std::string&)>& visit) const;

private:
    struct Place {
        std::uint64_t start = 0;
        std::uint64_t size = 0; ///< 0: none
    };

    void flush();

    Descriptor file_;
    Sparse_array<Place> places_;
    std::uint64_t written_ = 0; ///< size of the file
    std::string unwritten_;     ///< what comes behind it
};

} // namespace vexacm_tool
