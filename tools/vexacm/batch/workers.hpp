// SPDX-License-Identifier: MIT
#pragma once

#include "child.hpp"
#include "messages.hpp"
#include "seconds.hpp"
#include "worker.hpp"

#include <chrono>
#include <deque>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <string_view>

namespace vexacm_tool {

/// What comes from workers.
class Worker_events {
public:
    virtual ~Worker_events() = default;

    /// A worker has done a job; `line` is its result's.
    virtual void on_result(const Result_head& head, std::string_view line) = 0;

    /// A job cost its worker.
    virtual void on_loss(std::size_t job, Outcome outcome, const std::string& detail,
                         std::string printed) = 0;

    /// A job that was given to a worker was not begun.
    virtual void on_return(std::size_t job) = 0;

    /// What a compiler printed when it was asked for its extensions.
    virtual void on_probe(unsigned int compiler, std::string_view printed) = 0;
};

/// The processes that run jobs, each a few ahead. One that ends, for whatever
/// reason, costs the job that it was at.
class Workers {
public:
    /// At most so many; a job may take `timeout`.
    Workers(const Work& work, std::size_t count, Seconds timeout, Worker_events& events);

    /// Gives jobs to those that have room, new ones included; `next` tells which.
    void give(const std::function<std::optional<std::size_t>()>& next);

    /// Waits until something happens, at most for that long.
    void wait(Seconds at_most);

    /// Kills them all; their jobs were not begun.
    void stop();

private:
    using Clock = std::chrono::steady_clock;

    struct Worker {
        Capture capture;
        Descriptor connection;
        Child child;
        std::deque<std::size_t> jobs = {}; ///< given and without a result; it is at the first
        Clock::time_point began = {};      ///< the job that it is at
        Clock::time_point heard = {};      ///< when it was given that or last sent something
        std::string unread = {};           ///< the beginning of a message
        std::size_t most_jobs = 1;
        bool is_last = false; ///< it said that it ends
        bool is_out_of_memory = false;
        bool is_closed = false; ///< there is nothing more to come
        bool is_broken = false; ///< what it sends makes no sense
    };

    Worker* with_room();
    Worker* add();
    void give(Worker& worker, std::size_t job);
    void receive(Worker& worker);
    void read_messages(Worker& worker);
    void take(Worker& worker, Message message, std::string_view text);
    void take_result(Worker& worker, std::string_view text);
    void bury(Worker& worker, bool is_late);
    Clock::time_point deadline(const Worker& worker) const;

    const Work& work_;
    std::size_t count_;
    Clock::duration timeout_;
    std::string late_; ///< what is said of a job that took too long
    Worker_events& events_;
    std::list<Worker> workers_;
};

} // namespace vexacm_tool
