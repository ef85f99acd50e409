// SPDX-License-Identifier: MIT
#include "plugin_test.hpp"

#include <gtest/gtest.h>

#include <pthread.h>

namespace {

// glslang takes two thread keys each time, of 1024 that a process has.
TEST(Lifetime, ManyLoadsLeaveTheKeysOfTheProcess) {
    for (int i = 0; i < 700; ++i)
        ASSERT_EQ(errors_of(with_body(SUBJECT.statement)), Texts{}) << "load " << i;
    pthread_key_t keys[900];
    for (pthread_key_t& key : keys)
        ASSERT_EQ(pthread_key_create(&key, nullptr), 0);
}

} // namespace
