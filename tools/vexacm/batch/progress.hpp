// SPDX-License-Identifier: MIT
#pragma once

#include "seconds.hpp"

#include <chrono>
#include <cstddef>

namespace vexacm_tool {

/// A line on a terminal that tells how far a run is, and vanishes.
class Progress {
public:
    Progress(bool is_shown, std::size_t jobs) : is_shown_(is_shown), jobs_(jobs) {}
    ~Progress() { hide(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Shows it anew, if the last time is long enough ago.
    void show(std::size_t done, std::size_t failed);
    void hide();

    /// How long the line may stay as it is.
    Seconds interval() const;

private:
    using Clock = std::chrono::steady_clock;

    bool is_shown_;
    std::size_t jobs_;
    bool is_there_ = false;
    Clock::time_point began_ = Clock::now();
    Clock::time_point next_ = began_;
};

/// Whether standard error is a terminal, on which nothing else is to be printed.
bool has_room_for_progress(bool prints_results);

} // namespace vexacm_tool
