// SPDX-License-Identifier: MIT
#include "schedule.hpp"

#include <iterator>

namespace vexacm_tool {

Schedule::Schedule(const Jobs& jobs, std::size_t give_up_after, Settled settled)
    : jobs_(jobs), losses_(give_up_after), settled_(std::move(settled)),
      first_untouched_(jobs.first()) {}

std::optional<std::size_t> Schedule::next() {
    for (;;) {
        std::size_t job = first_untouched_;
        if (!given_back_.empty()) {
            job = *given_back_.begin();
            given_back_.erase(given_back_.begin());
        } else if (first_untouched_ < jobs_.count()) {
            first_untouched_ = jobs_.next(first_untouched_);
        } else {
            return std::nullopt;
        }
        const unsigned int compiler = jobs_.compiler_number(job);
        if (!losses_.given_up(compiler, job)) {
            unfinished_.insert({compiler, job});
            return job;
        }
        unfinished_.erase({compiler, job});
        settle(job, true);
    }
}

void Schedule::give_back(std::size_t job) {
    given_back_.insert(job);
}

void Schedule::finish(std::size_t job, bool cost_a_worker) {
    const unsigned int compiler = jobs_.compiler_number(job);
    unfinished_.erase({compiler, job});
    ended_.insert({compiler, job});
    if (cost_a_worker)
        losses_.add(compiler, job);
    settle_those_of(compiler);
}

void Schedule::stop() {
    for (const auto& [compiler, job] : std::exchange(ended_, {}))
        settle(job, losses_.given_up(compiler, job));
}

void Schedule::settle(std::size_t job, bool given_up) {
    ++settled_count_;
    settled_(job, given_up);
}

// Those that stand are the first of the compiler's, those given up the last.
void Schedule::settle_those_of(unsigned int compiler) {
    auto first = ended_.lower_bound({compiler, 0});
    while (first != ended_.end() && first->first == compiler &&
           losses_.settled(compiler, first->second, unfinished_before(*first))) {
        const std::size_t job = first->second;
        first = ended_.erase(first);
        settle(job, losses_.given_up(compiler, job));
    }
    auto end = ended_.lower_bound({compiler + 1, 0});
    while (end != ended_.begin() && std::prev(end)->first == compiler &&
           losses_.given_up(compiler, std::prev(end)->second)) {
        const std::size_t job = std::prev(end)->second;
        end = ended_.erase(std::prev(end));
        settle(job, true);
    }
}

std::size_t Schedule::unfinished_before(const Job& job) const {
    return static_cast<std::size_t>(
        std::distance(unfinished_.lower_bound({job.first, 0}), unfinished_.lower_bound(job)));
}

} // namespace vexacm_tool
