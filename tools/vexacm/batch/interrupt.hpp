// SPDX-License-Identifier: MIT
#pragma once

namespace vexacm_tool {

/// While it lives, the first SIGINT, SIGTERM or SIGHUP does not end the process
/// but is noted; the second one does. Signals that the caller has the process
/// ignore stay ignored. Have one at a time.
class Interrupt {
public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    static bool noted();

    /// Readable once a signal was noted, for poll().
    static int descriptor();
};

/// In a forked child: signals act on it as they did before.
void stop_noting_interrupts();

} // namespace vexacm_tool
