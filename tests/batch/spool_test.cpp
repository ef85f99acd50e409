// SPDX-License-Identifier: MIT
#include "spool.hpp"

#include <gtest/gtest.h>

namespace {

using namespace vexacm_tool;

TEST(SpoolTest, LinesThenTheyComeBackWhereverTheyAreKept) {
    Spool spool;
    const std::string large(200000, 'a');
    spool.put(2, "small\n");
    spool.put(0, large);
    spool.put(1, "behind\n");
    EXPECT_EQ(spool.line(2), "small\n");
    EXPECT_TRUE(spool.line(0) == large);
    EXPECT_EQ(spool.line(1), "behind\n");
    spool.put(2, "another\n");
    EXPECT_EQ(spool.line(2), "another\n");
}

TEST(SpoolTest, ResultsThenInJobOrderWithoutThoseThatAreMissing) {
    Spool spool;
    Result result;
    result.jobs = 4;
    for (const std::size_t job : {3U, 0U, 2U}) {
        result.job = job;
        spool.put(job, to_line(result));
    }
    for (int round = 0; round < 2; ++round) {
        std::vector<std::size_t> visited;
        spool.for_each([&](const Result& one) { visited.push_back(one.job); });
        EXPECT_EQ(visited, (std::vector<std::size_t>{0, 2, 3}));
    }
}

} // namespace
