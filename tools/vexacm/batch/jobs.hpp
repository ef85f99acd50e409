// SPDX-License-Identifier: MIT
#pragma once

#include "../compilers.hpp"
#include "result.hpp"
#include "sources.hpp"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace vexacm_tool {

/// Every source with every compiler for it, numbered in job order: the sources
/// as they were named, for each the compilers in the order of the catalogue.
class Jobs {
public:
    /// `compilers` may be of both APIs, in the order of the catalogue.
    Jobs(std::vector<Source> sources, const std::vector<Compiler>& compilers,
         std::vector<std::string> defines, Run_name run = {}, std::optional<Shard> shard = {});

    std::size_t count() const { return first_jobs_.back(); }
    const Run_name& run() const { return run_; }

    /// Those that are this process's to run: the first, and the one after each.
    Shard shard() const { return shard_.value_or(Shard{}); }
    std::size_t first() const { return shard().first(); }
    std::size_t next(std::size_t job) const { return job + shard().of; }

    const std::vector<Source>& sources() const { return sources_; }

    std::size_t source_number(std::size_t job) const;
    const Source& source(std::size_t job) const { return sources_[source_number(job)]; }
    const Compiler& compiler(std::size_t job) const;

    /// The same for compilers of one name, which results do not tell apart.
    unsigned int compiler_number(std::size_t job) const { return numbers_.at(compiler(job).id); }

    /// The definitions for all sources, then the source's own.
    std::vector<std::string> defines(std::size_t job) const;

    Job_head head(std::size_t job) const;

private:
    const std::vector<Compiler>& compilers_for(const Source& source) const;

    std::vector<Source> sources_;
    std::vector<Compiler> shader_compilers_;
    std::vector<Compiler> kernel_compilers_;
    std::map<unsigned int, unsigned int> numbers_; ///< of each, by its ID
    std::vector<std::string> defines_;
    Run_name run_;
    std::optional<Shard> shard_;
    std::vector<std::size_t> first_jobs_; ///< of each source, and the count of all
};

} // namespace vexacm_tool
