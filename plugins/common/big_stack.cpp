// SPDX-License-Identifier: MIT
#include "common/big_stack.hpp"

#include <csignal>
#include <exception>
#include <new>

#include <pthread.h>

namespace plugin {
namespace {

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
    explicit Thread_attributes(std::size_t stack_size) {
        if (pthread_attr_init(&attributes_) != 0)
            throw std::bad_alloc();
        pthread_attr_setstacksize(&attributes_, stack_size);
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

void run_on_big_stack(std::size_t stack_size, const std::function<void()>& task) {
    Run run{task, nullptr};
    const Thread_attributes attributes(stack_size);
    pthread_t thread;
    if (pthread_create(&thread, attributes.get(), run_task, &run) != 0)
        throw std::bad_alloc();
    pthread_join(thread, nullptr);
    if (run.failure)
        std::rethrow_exception(run.failure);
}

} // namespace plugin
