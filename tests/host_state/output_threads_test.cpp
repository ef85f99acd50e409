// SPDX-License-Identifier: MIT
#include <thread>

#include "host_test.hpp"

namespace {

// What may be done on several threads at once.
using OutputThreads = Host_test;

constexpr std::size_t NUM_THREADS = 4;
constexpr std::size_t NUM_RECORDS = 50; // a thread
constexpr std::size_t NUM_ERRORS = 20;

Fake_plugin full_plugin() {
    Fake_plugin plugin = gles_plugin();
    plugin.outputs("").list().item("one").item("two").list().binary(std::string(1000, '\xff'));
    for (std::size_t i = 0; i < NUM_ERRORS; ++i)
        plugin.a("error").b("warning");
    return plugin;
}

template <class Action>
void on_several_threads(Action action) {
    std::vector<std::thread> threads;
    for (std::size_t self = 0; self < NUM_THREADS; ++self)
        threads.emplace_back(action, self);
    for (std::thread& thread : threads)
        thread.join();
}

std::size_t size_of_errors(const vexaoc_outputs& record) {
    std::size_t size = 0;
    for (std::uint32_t i = 0; i < record.num_strings_a; ++i)
        size += std::string(record.strings_a[i]).size();
    return size;
}

TEST_F(OutputThreads, DifferentRecordsThenReadAndReleasedAtOnce) {
    const One_plugin plugin(full_plugin());
    std::vector<vexaoc_outputs> records(NUM_THREADS * NUM_RECORDS);
    for (vexaoc_outputs& record : records)
        EXPECT_TRUE(Request().compile(&record, 0));

    std::vector<std::size_t> sizes(NUM_THREADS);
    EXPECT_EQ(stderr_of([&] {
                  on_several_threads([&](std::size_t self) {
                      for (std::size_t i = self; i < records.size(); i += NUM_THREADS) {
                          sizes[self] += size_of_errors(records[i]);
                          vexacm_release_compiler_outputs(&records[i]);
                      }
                  });
              }),
              "");
    EXPECT_EQ(sizes, std::vector<std::size_t>(NUM_THREADS, NUM_RECORDS * NUM_ERRORS * 5));
}

} // namespace
