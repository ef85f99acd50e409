// SPDX-License-Identifier: MIT
#include "results.hpp"

#include "../streams.hpp"

#include <algorithm>

namespace vexacm_tool {

Results::Results(const Jobs& jobs, Print print)
    : jobs_(jobs), print_(print), outcomes_(jobs.count(), Outcome::not_run),
      is_settled_(jobs.count()), first_unprinted_(jobs.first()) {}

void Results::put(std::size_t job, Outcome outcome, std::string_view line) {
    spool_.put(job, line);
    outcomes_[job] = outcome;
}

void Results::settle(std::size_t job) {
    is_settled_[job] = true;
    failed_count_ += outcomes_[job] != Outcome::compiled;
    exit_status_ = std::max(exit_status_, vexacm_tool::exit_status(outcomes_[job]));
    if (print_ == Print::as_they_end)
        write_standard_output(spool_.line(job));
    if (print_ != Print::in_job_order)
        return;
    for (; first_unprinted_ < is_settled_.size() && is_settled_[first_unprinted_];
         first_unprinted_ = jobs_.next(first_unprinted_))
        write_standard_output(spool_.line(first_unprinted_));
}

} // namespace vexacm_tool
