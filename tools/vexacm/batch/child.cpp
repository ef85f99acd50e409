// SPDX-License-Identifier: MIT
#include "child.hpp"

#include "interrupt.hpp"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace vexacm_tool {

namespace {

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

void settle_in(pid_t parent) {
    // Dies with the parent, which may be gone already.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(1);
    // What a plug-in starts can be killed with it, and Ctrl-C is the parent's.
    ::setpgid(0, 0);
    stop_noting_interrupts();
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    const Descriptor empty{::open("/dev/null", O_RDONLY | O_CLOEXEC)};
    ::dup2(empty.get(), STDIN_FILENO);
    // What is printed is there even if the next thing is a crash.
    std::setvbuf(stdout, nullptr, _IONBF, 0);
}

} // namespace

Child::Child(const std::function<void()>& run) {
    // Of a process that ignores it, nobody is told how its children ended.
    std::signal(SIGCHLD, SIG_DFL);
    // Or it would be printed twice.
    std::fflush(nullptr);
    const pid_t parent = ::getpid();
    id_.number = ::fork();
    if (id_.number < 0)
        fail("cannot start a worker");
    if (id_.number == 0) {
        settle_in(parent);
        run();
        ::_exit(0);
    }
    ::setpgid(id_.number, id_.number);
    process_ = Descriptor{static_cast<int>(::syscall(SYS_pidfd_open, id_.number, 0))};
    if (process_.get() < 0) {
        const int error = errno;
        kill();
        wait();
        errno = error;
        fail("cannot watch a worker");
    }
}

Child::~Child() {
    if (id_.number < 0)
        return;
    kill();
    wait();
}

void Child::kill() const {
    ::kill(-id_.number, SIGKILL);
    ::kill(id_.number, SIGKILL);
}

Child::Ending Child::wait() {
    siginfo_t ended;
    while (::waitid(P_PID, static_cast<id_t>(id_.number), &ended, WEXITED | WNOWAIT) < 0 &&
           errno == EINTR)
        continue;
    // Until it is reaped, the number of the group is its own.
    ::kill(-id_.number, SIGKILL);
    int status = 0;
    ::waitpid(std::exchange(id_.number, -1), &status, 0);
    if (WIFSIGNALED(status))
        return {Outcome::crashed,
                "killed by signal " + std::to_string(WTERMSIG(status)) + " (" +
                    ::strsignal(WTERMSIG(status)) + ")",
                false};
    const int code = WEXITSTATUS(status);
    return {Outcome::exited, "exit status " + std::to_string(code), code == 0};
}

} // namespace vexacm_tool
