// SPDX-License-Identifier: MIT
#include "process_state.hpp"

#include "captured_stderr.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include <pthread.h>
#include <unistd.h>

namespace {

void* call(void* task) {
    (*static_cast<std::function<void()>*>(task))();
    return nullptr;
}

} // namespace

bool is_mapped(const std::string& file) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find(file) != std::string::npos)
            return true;
    }
    return false;
}

std::size_t mapped_bytes() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void run_with_stack(std::size_t size, std::function<void()> task) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, call, &task), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::string printed_by(const std::function<void()>& task) {
    return stderr_of([&] {
        std::fflush(stdout);
        const int kept = dup(STDOUT_FILENO);
        dup2(STDERR_FILENO, STDOUT_FILENO);
        task();
        std::fflush(stdout);
        dup2(kept, STDOUT_FILENO);
        close(kept);
    });
}
