// SPDX-License-Identifier: MIT
#include <condition_variable>
#include <mutex>
#include <thread>

#include "host_test.hpp"

namespace {

using Host = Host_test;

TEST_F(Host, WithAThreadForEachStepThenTheSame) {
    const Seen expected = plain();
    Scenario scenario = begin_scenario();
    Seen seen;
    for (int step = 0; step < NUM_STEPS; ++step)
        std::thread([&] { seen += see_step(scenario, step); }).join();
    EXPECT_EQ(seen, expected);
}

TEST_F(Host, WhoseThreadsTakeTurnsThenTheSame) {
    const Seen expected = plain();
    Scenario scenario = begin_scenario();
    Seen seen;
    int next = 0;
    std::mutex mutex;
    std::condition_variable turn;
    const int num_threads = 3;
    const auto take_turns = [&](int self) {
        for (int step = self; step < NUM_STEPS; step += num_threads) {
            std::unique_lock<std::mutex> lock(mutex);
            turn.wait(lock, [&] { return next == step; });
            seen += see_step(scenario, step);
            ++next;
            turn.notify_all();
        }
    };
    std::vector<std::thread> threads;
    for (int self = 0; self < num_threads; ++self)
        threads.emplace_back(take_turns, self);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(seen, expected);
}

TEST_F(Host, ThatEndsTheThreadWhichInitialisedThenTheSame) {
    const Seen expected = plain();
    Scenario scenario = begin_scenario();
    Seen seen;
    std::thread([&] { seen += see_steps(scenario, 0, STEP_INITIALISED); }).join();
    seen += see_steps(scenario, STEP_INITIALISED, NUM_STEPS);
    EXPECT_EQ(seen, expected);
}

} // namespace
