// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Redirects file descriptor 2, so that it sees what plug-ins and the C library
/// print as well, from its construction to take() or its end.
class Captured_stderr {
public:
    Captured_stderr();
    ~Captured_stderr();
    Captured_stderr(const Captured_stderr&) = delete;
    Captured_stderr& operator=(const Captured_stderr&) = delete;

    /// Ends the capture and returns all that was written.
    std::string take();

private:
    void restore();

    int saved;
    int file;
};

/// All that `action` writes to standard error.
template <class Action>
std::string stderr_of(Action action) {
    Captured_stderr captured;
    action();
    return captured.take();
}
