// SPDX-License-Identifier: MIT
#include <algorithm>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "vexacm_internal_compiler.hpp"

namespace {

using VexaCM::Vexacm_internal_compiler;

constexpr std::size_t NUM_THREADS = 4;
constexpr std::size_t NUM_COPIES = 2000; // a thread

TEST(OutputCopies, OfOneRecordThenMadeAndReleasedAtOnce) {
    std::string text = "error";
    std::vector<char*> texts(20, text.data());
    vexaoc_string_list list = {static_cast<std::uint32_t>(texts.size()), texts.data()};
    std::vector<std::uint8_t> binary(1000, 0xff);
    const vexaoc_outputs source = {1,
                                   &list,
                                   static_cast<std::uint32_t>(binary.size()),
                                   binary.data(),
                                   list.num_strings,
                                   texts.data(),
                                   list.num_strings,
                                   texts.data()};

    std::promise<void> all_there;
    const std::shared_future<void> start = all_there.get_future().share();
    std::vector<std::size_t> good(NUM_THREADS);
    std::vector<std::thread> threads;
    for (std::size_t self = 0; self < NUM_THREADS; ++self)
        threads.emplace_back([&, self] {
            start.wait();
            for (std::size_t i = 0; i < NUM_COPIES; ++i) {
                vexaoc_outputs copy = {};
                Vexacm_internal_compiler::copy_compiler_outputs(&copy, &source);
                const auto is_copied = [&](const char* copied) { return copied && copied == text; };
                good[self] += std::all_of(copy.strings_a, copy.strings_a + 20, is_copied) &&
                              std::all_of(copy.strings_b, copy.strings_b + 20, is_copied) &&
                              std::equal(binary.begin(), binary.end(), copy.binary);
                Vexacm_internal_compiler::release_compiler_outputs(&copy);
            }
        });
    all_there.set_value();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, std::vector<std::size_t>(NUM_THREADS, NUM_COPIES));
}

} // namespace
