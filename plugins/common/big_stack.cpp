// SPDX-License-Identifier: MIT
#include "common/big_stack.hpp"

#include <csignal>
#include <cstddef>
#include <exception>
#include <new>

#include <pthread.h>

namespace plugin {
namespace {

// Address space only: pages are taken when they are touched, some 100 kB for a usual source.
// Compilers take up to 1 kB for a token, and each plug-in caps the tokens of a source, which makes
// this enough, whatever little stack the caller's thread has.
constexpr std::size_t STACK_SIZE = std::size_t{512} << 20U;

struct Run {
    const std::function<void()>& task;
    std::exception_ptr failure;
};

void* run_task(void* argument) {
    Run& run = *static_cast<Run*>(argument);
    try {
        run.task();
    } catch (...) {
        run.failure = std::current_exception();
    }
    return nullptr;
}

class Thread_attributes {
public:
    Thread_attributes() {
        if (pthread_attr_init(&attributes_) != 0)
            throw std::bad_alloc();
        pthread_attr_setstacksize(&attributes_, STACK_SIZE);
        block_signals();
    }
    ~Thread_attributes() { pthread_attr_destroy(&attributes_); }
    Thread_attributes(const Thread_attributes&) = delete;
    Thread_attributes& operator=(const Thread_attributes&) = delete;

    const pthread_attr_t* get() const { return &attributes_; }

private:
    // The application's signal handlers must not find themselves on a thread it knows nothing of.
    void block_signals() {
        sigset_t all;
        sigfillset(&all);
        pthread_attr_setsigmask_np(&attributes_, &all);
    }

    pthread_attr_t attributes_;
};

} // namespace

void run_on_big_stack(const std::function<void()>& task) {
    Run run{task, nullptr};
    const Thread_attributes attributes;
    pthread_t thread;
    if (pthread_create(&thread, attributes.get(), run_task, &run) != 0)
        throw std::bad_alloc();
    pthread_join(thread, nullptr);
    if (run.failure)
        std::rethrow_exception(run.failure);
}

} // namespace plugin
