// SPDX-License-Identifier: MIT
#include "losses.hpp"

#include <algorithm>

namespace vexacm_tool {

const std::vector<std::size_t>& Losses::of(unsigned int compiler) const {
    static const std::vector<std::size_t> NONE;
    const auto found = jobs_.find(compiler);
    return found != jobs_.end() ? found->second : NONE;
}

void Losses::add(unsigned int compiler, std::size_t job) {
    std::vector<std::size_t>& jobs = jobs_[compiler];
    jobs.insert(std::upper_bound(jobs.begin(), jobs.end(), job), job);
}

bool Losses::given_up(unsigned int compiler, std::size_t job) const {
    const std::vector<std::size_t>& jobs = of(compiler);
    return limit_ > 0 && jobs.size() >= limit_ && job > jobs[limit_ - 1];
}

bool Losses::settled(unsigned int compiler, std::size_t job, std::size_t unfinished_before) const {
    if (limit_ == 0 || given_up(compiler, job))
        return true;
    const std::vector<std::size_t>& jobs = of(compiler);
    const auto before = std::lower_bound(jobs.begin(), jobs.end(), job) - jobs.begin();
    return static_cast<std::size_t>(before) + unfinished_before < limit_;
}

} // namespace vexacm_tool
