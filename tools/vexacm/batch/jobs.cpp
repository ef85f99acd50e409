// SPDX-License-Identifier: MIT
#include "jobs.hpp"

#include <algorithm>

namespace vexacm_tool {

Jobs::Jobs(std::vector<Source> sources, const std::vector<Compiler>& compilers,
           std::vector<std::string> defines, Run_name run, std::optional<Shard> shard)
    : sources_(std::move(sources)), defines_(std::move(defines)), run_(std::move(run)),
      shard_(shard) {
    std::map<std::vector<std::string>, unsigned int> names;
    for (const Compiler& compiler : compilers) {
        (compiler.api == std::string_view("opencl") ? kernel_compilers_ : shader_compilers_)
            .push_back(compiler);
        numbers_[compiler.id] =
            names
                .try_emplace({compiler.driver, compiler.core, compiler.revision, compiler.api},
                             compiler.id)
                .first->second;
    }
    first_jobs_.reserve(sources_.size() + 1);
    first_jobs_.push_back(0);
    for (const Source& source : sources_)
        first_jobs_.push_back(count() + compilers_for(source).size());
}

const std::vector<Compiler>& Jobs::compilers_for(const Source& source) const {
    return source.stage == "kernel" ? kernel_compilers_ : shader_compilers_;
}

std::size_t Jobs::source_number(std::size_t job) const {
    const auto after = std::upper_bound(first_jobs_.begin(), first_jobs_.end(), job);
    return static_cast<std::size_t>(after - first_jobs_.begin()) - 1;
}

const Compiler& Jobs::compiler(std::size_t job) const {
    const std::size_t number = source_number(job);
    return compilers_for(sources_[number])[job - first_jobs_[number]];
}

std::vector<std::string> Jobs::defines(std::size_t job) const {
    std::vector<std::string> all = defines_;
    const Source& own = source(job);
    all.insert(all.end(), own.defines.begin(), own.defines.end());
    return all;
}

Job_head Jobs::head(std::size_t job) const {
    const Source& from = source(job);
    const Compiler& with = compiler(job);
    return {job,
            count(),
            run_,
            shard_,
            from.file,
            from.stage,
            defines(job),
            from.kernels,
            {with.driver, with.core, with.revision, with.api, with.version}};
}

} // namespace vexacm_tool
