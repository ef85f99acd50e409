// SPDX-License-Identifier: MIT
#pragma once

#include "../compilers.hpp"
#include "result.hpp"
#include "sources.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace vexacm_tool {

/// Every source with every compiler for it, numbered in job order: the sources
/// as they were named, for each the compilers in the order of the catalogue.
class Jobs {
public:
    /// `compilers` may be of both APIs, in the order of the catalogue.
    Jobs(std::vector<Source> sources, const std::vector<Compiler>& compilers,
         std::vector<std::string> defines, Run_name run = {});

    std::size_t count() const { return first_jobs_.back(); }
    const std::vector<Source>& sources() const { return sources_; }

    std::size_t source_number(std::size_t job) const;
    const Source& source(std::size_t job) const { return sources_[source_number(job)]; }
    const Compiler& compiler(std::size_t job) const;

    /// The definitions for all sources, then the source's own.
    std::vector<std::string> defines(std::size_t job) const;

    /// A result in which all but what came of the job is filled in.
    Result result(std::size_t job, Outcome outcome, std::string detail = {}) const;

private:
    const std::vector<Compiler>& compilers_for(const Source& source) const;

    std::vector<Source> sources_;
    std::vector<Compiler> shader_compilers_;
    std::vector<Compiler> kernel_compilers_;
    std::vector<std::string> defines_;
    Run_name run_;
    std::vector<std::size_t> first_jobs_; ///< of each source, and the count of all
};

} // namespace vexacm_tool
