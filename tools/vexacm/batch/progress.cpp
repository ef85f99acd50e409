// SPDX-License-Identifier: MIT
#include "progress.hpp"

#include <cmath>
#include <iostream>
#include <string>
#include <unistd.h>
#include <utility>

namespace vexacm_tool {

namespace {

constexpr auto INTERVAL = std::chrono::milliseconds(100);

std::string text(std::size_t done, std::size_t failed, std::size_t jobs, Seconds passed) {
    const auto count = static_cast<double>(done);
    const double rate = passed.count() > 0 ? count / passed.count() : 0;
    std::string line = std::to_string(done) + " of " + std::to_string(jobs) + " jobs, " +
                       std::to_string(failed) + " failed";
    if (done > 0 && rate > 0)
        line += ", " + std::to_string(std::lround(rate)) + " a second, " +
                std::to_string(std::lround(static_cast<double>(jobs - done) / rate)) + " s left";
    return line;
}

} // namespace

void Progress::show(std::size_t done, std::size_t failed) {
    const auto now = Clock::now();
    if (!is_shown_ || now < next_)
        return;
    next_ = now + INTERVAL;
    is_there_ = true;
    std::cerr << "\r\x1b[K" + text(done, failed, jobs_, now - began_);
}

void Progress::hide() {
    if (std::exchange(is_there_, false))
        std::cerr << "\r\x1b[K";
}

Seconds Progress::interval() const {
    return is_shown_ ? Seconds(INTERVAL) : Seconds(3600);
}

bool has_room_for_progress(bool prints_results) {
    return ::isatty(STDERR_FILENO) != 0 && !prints_results;
}

} // namespace vexacm_tool
