// SPDX-License-Identifier: MIT
#include "schedule.hpp"

#include "plugin_directory.hpp"

#include <algorithm>
#include <random>

#include <gtest/gtest.h>

namespace {

using namespace vexacm_tool;

/// Twenty sources with three compilers.
class ScheduleTest : public testing::Test {
protected:
    static std::string directory_of(Plugin_directory& plugins) {
        Fake_plugin plugin = Fake_plugin::of_type("openglessl");
        plugin.core("k46x", "r0p0_00rel0").core("k58x", "r0p0_00rel0").core("k42x", "r0p0_00rel0");
        plugins.add_driver("openglessl", "Vexa-K300_r5p0-06rel0",
                           plugin.pair("openglessl_version", "320"));
        return plugins.root();
    }

    static std::vector<Compiler> compilers() {
        std::vector<Compiler> all;
        for (const unsigned int id : Compiler_ids())
            all.emplace_back(id);
        return all;
    }

    Plugin_directory plugins;
    vexacm::Library library{directory_of(plugins)};
    Jobs jobs{std::vector<Source>(20, {"a.frag", "fragment"}), compilers(), {}};
};

/// What came of a job: whether it was given up, or not settled.
using Settled = std::vector<std::optional<bool>>;

/// Those given up when these jobs cost a worker: all behind the limit's.
Settled expected(const Jobs& jobs, const std::vector<bool>& costs, std::size_t limit) {
    Settled all;
    std::map<unsigned int, std::size_t> losses;
    for (std::size_t job = 0; job < jobs.count(); ++job) {
        std::size_t& lost = losses[jobs.compiler(job).id];
        all.emplace_back(limit > 0 && lost >= limit);
        lost += costs[job];
    }
    return all;
}

TEST_F(ScheduleTest, NothingIsLostThenEveryJobOnceInOrder) {
    Settled settled(jobs.count());
    Schedule schedule(jobs, 3, [&](std::size_t job, bool given_up) { settled[job] = given_up; });
    for (std::size_t job = 0; job < jobs.count(); ++job) {
        EXPECT_EQ(schedule.next(), job);
        schedule.finish(job, false);
    }
    EXPECT_EQ(schedule.next(), std::nullopt);
    EXPECT_TRUE(schedule.is_done());
    EXPECT_EQ(settled, Settled(jobs.count(), false));
}

TEST_F(ScheduleTest, GivenBackThenTheSameJobNext) {
    Schedule schedule(jobs, 3, [](std::size_t, bool) {});
    EXPECT_EQ(schedule.next(), 0U);
    EXPECT_EQ(schedule.next(), 1U);
    EXPECT_EQ(schedule.next(), 2U);
    schedule.give_back(2);
    schedule.give_back(1);
    EXPECT_EQ(schedule.next(), 1U);
    EXPECT_EQ(schedule.next(), 2U);
    EXPECT_EQ(schedule.next(), 3U);
}

TEST_F(ScheduleTest, StoppedThenWhatHasEndedStands) {
    Settled settled(jobs.count());
    Schedule schedule(jobs, 1, [&](std::size_t job, bool given_up) { settled[job] = given_up; });
    for (int i = 0; i < 4; ++i)
        schedule.next();
    // Job 0 has the same compiler and could still cost a worker.
    schedule.finish(3, false);
    EXPECT_EQ(settled[3], std::nullopt);
    schedule.stop();
    EXPECT_EQ(settled[3], false);
    EXPECT_EQ(settled[0], std::nullopt);
}

TEST_F(ScheduleTest, AnyOrderOfEndsThenTheSameJobsAreGivenUp) {
    for (unsigned int seed = 0; seed < 500; ++seed) {
        std::mt19937 dice(seed);
        const std::size_t limit = dice() % 4;
        const std::size_t at_once = 1 + dice() % 12;
        std::vector<bool> costs;
        for (std::size_t job = 0; job < jobs.count(); ++job)
            costs.push_back(dice() % 3 == 0);

        Settled settled(jobs.count());
        Schedule schedule(jobs, limit, [&](std::size_t job, bool given_up) {
            EXPECT_EQ(settled[job], std::nullopt);
            settled[job] = given_up;
        });
        std::vector<std::size_t> running;
        while (!schedule.is_done()) {
            while (running.size() < at_once) {
                const auto job = schedule.next();
                if (!job)
                    break;
                running.push_back(*job);
            }
            if (running.empty())
                break;
            const auto one = running.begin() + static_cast<std::ptrdiff_t>(dice() % running.size());
            if (dice() % 8 == 0)
                schedule.give_back(*one);
            else
                schedule.finish(*one, costs[*one]);
            running.erase(one);
        }
        EXPECT_TRUE(schedule.is_done());
        EXPECT_EQ(settled, expected(jobs, costs, limit)) << seed;
    }
}

} // namespace
