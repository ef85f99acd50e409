// SPDX-License-Identifier: MIT
#include "merged.hpp"

#include "../batch/losses.hpp"
#include "../batch/result_lines.hpp"

#include <algorithm>

namespace vexacm_tool {

void Merged::add(const std::string& file) {
    files_.push_back(file);
    read_results(file, [this](Result result) { take(std::move(result)); });
}

std::optional<unsigned int> Merged::shards() const {
    return first_.shard && !shards_differ_ ? std::optional(first_.shard->of) : std::nullopt;
}

void Merged::check_run(const Result& result) {
    if (first_file_ == 0) {
        first_ = result;
        first_file_ = static_cast<std::uint32_t>(files_.size());
    }
    if (result.run != first_.run || result.jobs != first_.jobs)
        throw Failure{Exit_status::input_output, "results of different runs, in '" +
                                                     files_[first_file_ - 1] + "' and '" +
                                                     files_.back() + "'"};
    if (!first_.shard)
        first_.shard = result.shard;
    shards_differ_ = shards_differ_ || (result.shard && result.shard->of != first_.shard->of);
}

void Merged::take(Result result) {
    check_run(result);
    result.shard.reset();
    const Entry known = entries_.at(result.job);
    if (known.file == 0 || (!stands(known.outcome) && stands(result.outcome)))
        put(result, to_line(result));
    else if (stands(known.outcome) && stands(result.outcome) &&
             spool_.line(result.job) != to_line(result))
        throw Failure{Exit_status::input_output,
                      two_results(result.job, files_[known.file - 1], files_.back())};
}

void Merged::put(const Result& result, const std::string& line) {
    entries_[result.job] = {static_cast<std::uint32_t>(files_.size()),
                            compiler_number(result.compiler), result.outcome};
    spool_.put(result.job, line);
}

std::uint32_t Merged::compiler_number(const Compiler_name& name) {
    return compilers_
        .try_emplace({name.driver, name.core, name.revision, name.api},
                     static_cast<std::uint32_t>(compilers_.size()))
        .first->second;
}

void Merged::settle() {
    Losses losses(first_.run.give_up_after);
    const unsigned int shards = this->shards().value_or(1);
    entries_.for_each([&](std::size_t job, const Entry& entry) {
        if (entry.file == 0)
            return;
        Outcome outcome = entry.outcome;
        if (losses.given_up(entry.compiler, job)) {
            const Result result = given_up(result_of_line(spool_.line(job)));
            outcome = result.outcome;
            spool_.put(job, to_line(result));
        } else if (!stands(outcome)) {
            return;
        } else if (costs_a_worker(outcome)) {
            losses.add(entry.compiler, job);
        }
        ++counts_[static_cast<unsigned int>(job % shards) + 1];
        exit_status_ = std::max(exit_status_, vexacm_tool::exit_status(outcome));
    });
}

} // namespace vexacm_tool
