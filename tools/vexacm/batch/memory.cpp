// SPDX-License-Identifier: MIT
#include "memory.hpp"

#include "messages.hpp"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <sys/resource.h>
#include <unistd.h>

namespace vexacm_tool {

namespace {

std::size_t start = 0; ///< what the process had when the limit was set
std::size_t limit = 0; ///< what it may grow by
int column = 0;        ///< of /proc/self/statm, where that stands
int told_on = -1;
volatile std::sig_atomic_t allocation_failed = 0;

// Callable in a signal handler, where allocating is not.
std::size_t size_of_process() {
    char text[128] = {};
    const int file = ::open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return 0;
    [[maybe_unused]] const ssize_t count = ::read(file, text, sizeof text - 1);
    ::close(file);
    const char* digit = text;
    for (int passed = 0; passed < column && *digit != '\0'; ++digit)
        passed += *digit == ' ';
    std::size_t pages = 0;
    for (; *digit >= '0' && *digit <= '9'; ++digit)
        pages = 10 * pages + static_cast<std::size_t>(*digit - '0');
    return pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

void tell() {
    if (!memory_is_used_up())
        return;
    const Message_head head{0, Message::memory_out};
    [[maybe_unused]] const ssize_t count = ::write(told_on, &head, sizeof head);
}

void tell_and_end(int signal) {
    tell();
    std::raise(signal);
}

[[noreturn]] void note_failed_allocation() {
    allocation_failed = 1;
    throw std::bad_alloc();
}

// On a stack of its own: that of the program may be what there is no room for.
void tell_on(int signal) {
    struct sigaction action {};
    action.sa_handler = tell_and_end;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_ONSTACK);
    ::sigaction(signal, &action, nullptr);
}

} // namespace

// A plug-in in C does not say that an allocation failed: it ends in its own way
// with the limit almost reached.
bool memory_is_used_up() {
    return allocation_failed != 0 || (limit > 0 && size_of_process() > start + limit - limit / 8);
}

void limit_memory(std::size_t megabytes, int connection, Memory which) {
    told_on = connection;
    column = which == Memory::all ? 0 : 5;
    std::set_new_handler(note_failed_allocation);
    static char stack[65536];
    stack_t alternative{};
    alternative.ss_sp = stack;
    alternative.ss_size = sizeof stack;
    ::sigaltstack(&alternative, nullptr);
    for (const int signal : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT})
        tell_on(signal);
    std::atexit(tell);
    if (megabytes == 0)
        return;
    start = size_of_process();
    limit = megabytes << 20;
    const rlimit all{start + limit, start + limit};
    ::setrlimit(which == Memory::all ? RLIMIT_AS : RLIMIT_DATA, &all);
}

void forget_failed_allocations() {
    allocation_failed = 0;
}

bool memory_is_short() {
    return limit > 0 && size_of_process() > start + limit / 2;
}

} // namespace vexacm_tool
