// SPDX-License-Identifier: MIT
#include "losses.hpp"

#include <gtest/gtest.h>

namespace {

using vexacm_tool::Losses;

TEST(LossesTest, FewerThanTheLimitThenNotGivenUp) {
    Losses losses(2);
    losses.add(0, 5);
    losses.add(1, 6);
    EXPECT_FALSE(losses.given_up(0, 7));
    EXPECT_FALSE(losses.given_up(1, 7));
}

TEST(LossesTest, LimitReachedThenLaterJobsAreGivenUp) {
    Losses losses(2);
    losses.add(0, 5);
    losses.add(0, 9);
    EXPECT_FALSE(losses.given_up(0, 7));
    EXPECT_FALSE(losses.given_up(0, 9));
    EXPECT_TRUE(losses.given_up(0, 10));
}

TEST(LossesTest, EarlierLossesThenMoreIsGivenUp) {
    Losses losses(2);
    losses.add(0, 9);
    losses.add(0, 5);
    losses.add(0, 3);
    EXPECT_FALSE(losses.given_up(0, 5));
    EXPECT_TRUE(losses.given_up(0, 6));
    EXPECT_TRUE(losses.given_up(0, 9));
}

TEST(LossesTest, NoLimitThenNever) {
    Losses losses(0);
    for (std::size_t job = 0; job < 100; ++job)
        losses.add(0, job);
    EXPECT_FALSE(losses.given_up(0, 1000));
    EXPECT_TRUE(losses.settled(0, 1000, 50));
}

TEST(LossesTest, UnfinishedJobsBeforeItThenNotSettledWhileTheyCouldReachTheLimit) {
    Losses losses(3);
    losses.add(0, 5);
    EXPECT_TRUE(losses.settled(0, 9, 1));
    EXPECT_FALSE(losses.settled(0, 9, 2));
    EXPECT_TRUE(losses.settled(0, 4, 2));
    losses.add(0, 6);
    losses.add(0, 7);
    EXPECT_TRUE(losses.settled(0, 9, 2));
}

} // namespace
