// SPDX-License-Identifier: MIT
#include "workers.hpp"

#include "interrupt.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <poll.h>
#include <sys/socket.h>
#include <system_error>
#include <vector>

namespace vexacm_tool {

namespace {

// A worker is given jobs ahead for so long, so that it need not wait for its
// parent, which may not get a processor at once; behind a slow job none is to wait
// that another worker could do.
constexpr auto AHEAD = std::chrono::milliseconds(20);
constexpr std::size_t MOST_AHEAD = 32;

std::size_t jobs_ahead(std::chrono::steady_clock::duration job) {
    const auto count =
        AHEAD / std::max<std::chrono::steady_clock::duration>(job, std::chrono::microseconds(1));
    return std::clamp<std::size_t>(static_cast<std::size_t>(count), 1, MOST_AHEAD);
}

struct Connection {
    Descriptor parent;
    Descriptor child;
};

Connection connect() {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot start a worker");
    return {Descriptor{ends[0]}, Descriptor{ends[1]}};
}

// A process that ends closes its files a moment earlier.
bool ends_soon(const Child& child) {
    pollfd process{child.descriptor(), POLLIN, 0};
    return ::poll(&process, 1, 1000) > 0;
}

} // namespace

Workers::Workers(const Work& work, std::size_t count, Seconds timeout, Worker_events& events)
    : work_(work), count_(count), timeout_(std::chrono::duration_cast<Clock::duration>(timeout)),
      late_("no answer within " + in_seconds(timeout)), events_(events) {}

Workers::Worker* Workers::add() {
    if (workers_.size() >= count_)
        return nullptr;
    try {
        Connection connection = connect();
        Capture capture;
        Child child([&] {
            // Nobody holds a connection open that is not theirs.
            connection.parent.close();
            for (Worker& other : workers_)
                other.connection.close();
            capture.catch_standard_streams();
            work(work_, capture, connection.child.get());
        });
        workers_.push_back({std::move(capture), std::move(connection.parent), std::move(child)});
        return &workers_.back();
    } catch (const std::system_error&) {
        // Fewer do as well.
        if (workers_.empty())
            throw;
        count_ = workers_.size();
        return nullptr;
    }
}

// The one that has least to do.
Workers::Worker* Workers::with_room() {
    Worker* found = nullptr;
    for (Worker& worker : workers_) {
        const bool has_room = !worker.is_last && !worker.is_closed && !worker.is_broken &&
                              worker.jobs.size() < worker.most_jobs;
        if (has_room && (found == nullptr || worker.jobs.size() < found->jobs.size()))
            found = &worker;
    }
    return found;
}

void Workers::give(const std::function<std::optional<std::size_t>()>& next) {
    for (;;) {
        Worker* worker = with_room();
        const bool is_full = workers_.size() >= count_;
        if (worker == nullptr && is_full)
            return;
        const std::optional<std::size_t> job = next();
        if (!job)
            return;
        if (worker == nullptr || (!worker->jobs.empty() && !is_full))
            if (Worker* const added = add())
                worker = added;
        if (worker == nullptr)
            return events_.on_return(*job);
        give(*worker, *job);
    }
}

void Workers::give(Worker& worker, std::size_t job) {
    if (worker.jobs.empty())
        worker.began = worker.heard = Clock::now();
    worker.jobs.push_back(job);
    const std::uint64_t number = job;
    // One that is gone is found out by its end.
    [[maybe_unused]] const ssize_t sent =
        ::send(worker.connection.get(), &number, sizeof number, MSG_NOSIGNAL);
}

Workers::Clock::time_point Workers::deadline(const Worker& worker) const {
    return worker.jobs.empty() ? Clock::time_point::max() : worker.heard + timeout_;
}

void Workers::wait(Seconds at_most) {
    auto until = Clock::now() + std::chrono::duration_cast<Clock::duration>(at_most);
    std::vector<pollfd> files{{Interrupt::descriptor(), POLLIN, 0}};
    for (const Worker& worker : workers_) {
        until = std::min(until, deadline(worker));
        files.push_back({worker.connection.get(), POLLIN, 0});
        files.push_back({worker.child.descriptor(), POLLIN, 0});
    }
    // Rounded up: woken early, it would go round and round until the time has come.
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
    if (::poll(files.data(), files.size(), static_cast<int>(std::clamp<long>(left, 0, 60000))) <
            0 &&
        errno != EINTR)
        throw std::system_error(errno, std::generic_category(), "cannot wait for workers");

    // What came is read before anyone is found to be late.
    std::size_t file = 1;
    for (Worker& worker : workers_) {
        if (files[file].revents != 0)
            receive(worker);
        file += 2;
    }
    const auto now = Clock::now();
    file = 2;
    for (auto worker = workers_.begin(); worker != workers_.end(); file += 2) {
        const bool is_late = now >= deadline(*worker);
        const bool has_ended = worker->is_closed || worker->is_broken || files[file].revents != 0;
        if (is_late || has_ended)
            bury(*worker, is_late && !has_ended);
        worker = is_late || has_ended ? workers_.erase(worker) : std::next(worker);
    }
}

void Workers::receive(Worker& worker) {
    std::array<char, 65536> block;
    while (!worker.is_closed && !worker.is_broken) {
        const ssize_t size =
            ::recv(worker.connection.get(), block.data(), block.size(), MSG_DONTWAIT);
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0 && errno == EAGAIN)
            return;
        worker.is_closed = size <= 0;
        worker.heard = Clock::now();
        worker.unread.append(block.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        read_messages(worker);
    }
}

void Workers::read_messages(Worker& worker) {
    std::string_view rest = worker.unread;
    while (!worker.is_broken && rest.size() >= sizeof(Message_head)) {
        std::string_view text = rest;
        const auto head = take_record<Message_head>(text);
        if (head.size > LARGEST_MESSAGE)
            worker.is_broken = true;
        if (head.size > text.size())
            break;
        take(worker, head.message, text.substr(0, head.size));
        rest = text.substr(head.size);
    }
    worker.unread.erase(0, worker.unread.size() - rest.size());
    if (worker.unread.empty() && worker.unread.capacity() > (1U << 20))
        worker.unread.shrink_to_fit();
}

void Workers::take(Worker& worker, Message message, std::string_view text) {
    if (message == Message::result && text.size() > sizeof(Result_head))
        take_result(worker, text);
    else if (message == Message::probed && text.size() > sizeof(std::uint32_t)) {
        const auto compiler = take_record<std::uint32_t>(text);
        events_.on_probe(compiler, text);
    } else if (message == Message::memory_out)
        worker.is_out_of_memory = true;
    else
        worker.is_broken = true;
}

void Workers::take_result(Worker& worker, std::string_view text) {
    const auto head = take_record<Result_head>(text);
    if (worker.jobs.empty() || worker.jobs.front() != head.job ||
        head.outcome > static_cast<std::uint8_t>(Outcome::not_run)) {
        worker.is_broken = true;
        return;
    }
    const auto now = Clock::now();
    worker.most_jobs = jobs_ahead(now - worker.began);
    worker.began = now;
    worker.is_last = head.is_last;
    worker.jobs.pop_front();
    events_.on_result(head, text);
}

void Workers::bury(Worker& worker, bool is_late) {
    const std::size_t given = worker.jobs.size();
    std::string why;
    if (is_late)
        why = late_;
    else if (worker.is_broken)
        why = "it wrote into the connection to its parent";
    else if (worker.is_closed && !ends_soon(worker.child))
        why = "it closed the connection to its parent";
    if (!why.empty())
        worker.child.kill();
    Child::Ending ending = worker.child.wait();
    // Its last words, or a result that came in the nick of time.
    receive(worker);
    if (!why.empty())
        ending = {is_late ? Outcome::timed_out : Outcome::crashed, why, false};
    else if (worker.is_out_of_memory)
        ending.outcome = Outcome::out_of_memory;

    const bool just_made_it = is_late && worker.jobs.size() < given;
    if (!worker.jobs.empty() && !worker.is_last && !just_made_it) {
        const std::size_t job = worker.jobs.front();
        worker.jobs.pop_front();
        events_.on_loss(job, ending.outcome, ending.detail, worker.capture.take());
    }
    for (const std::size_t job : worker.jobs)
        events_.on_return(job);
}

void Workers::stop() {
    for (const Worker& worker : workers_)
        worker.child.kill();
    for (const Worker& worker : std::exchange(workers_, {}))
        for (const std::size_t job : worker.jobs)
            events_.on_return(job);
}

} // namespace vexacm_tool
