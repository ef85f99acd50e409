// SPDX-License-Identifier: MIT
#include "run.hpp"

#include "../compile_report.hpp"
#include "interrupt.hpp"
#include "schedule.hpp"
#include "workers.hpp"

#include <iostream>
#include <map>
#include <unistd.h>
#include <vector>

namespace vexacm_tool {

namespace {

class Run : private Worker_events {
public:
    Run(const Work& work, const Run_limits& limits, Results& results)
        : jobs_(work.jobs), outputs_(work.outputs), cache_(work.cache), results_(results),
          is_cached_(work.cache != nullptr ? work.jobs.count() : 0),
          schedule_(work.jobs, limits.give_up_after,
                    [this](std::size_t job, bool given_up) { settle(job, given_up); }),
          workers_(work, limits.workers, limits.timeout, *this) {}

    void run(Progress& progress) {
        while (!Interrupt::noted()) {
            workers_.give([this] { return next(); });
            if (schedule_.is_done())
                return;
            progress.show(schedule_.settled_count(), results_.failed_count());
            workers_.wait(progress.interval());
        }
    }

    // What has ended stands; the rest is not run.
    void stop() {
        workers_.stop();
        schedule_.stop();
        // Another process may have been at it each time before.
        if (has_stored_)
            cache_->keep_limit();
        for (std::size_t job = jobs_.first(); job < jobs_.count(); job = jobs_.next(job))
            if (!results_.is_settled(job)) {
                if (results_.outcome(job) == Outcome::not_run)
                    results_.put({jobs_.head(job), Outcome::not_run});
                results_.settle(job);
            }
    }

    std::size_t cached_count() const { return cached_count_; }

    void tell_what_there_is_besides() const {
        if (store_error_ != 0)
            cache_->tell_error(store_error_);
        for (const auto& [compiler, printed] : probes_)
            std::cerr << compiler_line(Compiler(compiler)) +
                             "printed when it was asked for its extensions:\n" + printed;
    }

private:
    // One that an earlier attempt has done has ended when its turn comes.
    std::optional<std::size_t> next() {
        for (;;) {
            const std::optional<std::size_t> job = schedule_.next();
            if (!job || results_.outcome(*job) == Outcome::not_run)
                return job;
            schedule_.finish(*job, costs_a_worker(results_.outcome(*job)));
        }
    }

    void on_result(const Result_head& head, std::string_view line) override {
        const auto outcome = static_cast<Outcome>(head.outcome);
        results_.put(head.job, outcome, line);
        if (cache_ != nullptr) {
            is_cached_[head.job] = head.is_cached;
            if (head.store_error != 0)
                store_error_ = head.store_error;
            if (head.is_stored)
                cache_->keep_limit();
            has_stored_ = has_stored_ || head.is_stored;
        }
        schedule_.finish(head.job, costs_a_worker(outcome));
    }

    void on_loss(std::size_t job, Outcome outcome, const std::string& detail,
                 std::string printed) override {
        remove_unfinished(job);
        Result result(jobs_.head(job), outcome, detail);
        result.printed = std::move(printed);
        results_.put(result);
        schedule_.finish(job, true);
    }

    void on_return(std::size_t job) override {
        remove_unfinished(job);
        schedule_.give_back(job);
    }

    void on_probe(unsigned int compiler, std::string_view printed) override {
        probes_.emplace(compiler, printed);
    }

    // A worker that is killed leaves behind what it was writing.
    void remove_unfinished(std::size_t job) const {
        if (outputs_ != nullptr)
            ::unlink(outputs_->unfinished_file(job).c_str());
    }

    void settle(std::size_t job, bool given_up) {
        if (given_up && outputs_ != nullptr && results_.outcome(job) == Outcome::compiled)
            ::unlink(outputs_->file(job).c_str());
        if (given_up)
            results_.put(vexacm_tool::given_up(jobs_.head(job)));
        else if (cache_ != nullptr && is_cached_[job])
            ++cached_count_;
        results_.settle(job);
    }

    const Jobs& jobs_;
    const Output_names* outputs_;
    Cache* cache_;
    Results& results_;
    std::vector<bool> is_cached_; ///< the results of these jobs
    std::size_t cached_count_ = 0;
    bool has_stored_ = false;
    int store_error_ = 0;
    std::map<unsigned int, std::string> probes_;
    Schedule schedule_;
    Workers workers_;
};

} // namespace

std::size_t run_jobs(const Work& work, const Run_limits& limits, Results& results,
                     Progress& progress) {
    Run run(work, limits, results);
    run.run(progress);
    run.stop();
    progress.hide();
    run.tell_what_there_is_besides();
    return run.cached_count();
}

} // namespace vexacm_tool
