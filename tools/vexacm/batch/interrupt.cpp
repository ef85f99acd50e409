// SPDX-License-Identifier: MIT
#include "interrupt.hpp"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace vexacm_tool {

namespace {

constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t is_noted = 0;
int event = -1;

void note(int) {
    const int error = errno;
    is_noted = 1;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t count = ::write(event, &one, sizeof one);
    errno = error;
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction now {};
    if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_IGN)
        return;
    struct sigaction action {};
    action.sa_handler = handler;
    // A call that waits returns; a second signal ends the process.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigaction(signal, &action, nullptr);
}

} // namespace

Interrupt::Interrupt() {
    event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (event < 0)
        throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
    is_noted = 0;
    for (const int signal : SIGNALS)
        handle(signal, note);
}

Interrupt::~Interrupt() {
    stop_noting_interrupts();
    ::close(event);
}

bool Interrupt::noted() {
    return is_noted != 0;
}

int Interrupt::descriptor() {
    return event;
}

void stop_noting_interrupts() {
    for (const int signal : SIGNALS)
        handle(signal, SIG_DFL);
}

} // namespace vexacm_tool
