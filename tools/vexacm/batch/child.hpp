// SPDX-License-Identifier: MIT
#pragma once

#include "descriptor.hpp"
#include "result.hpp"

#include <functional>
#include <string>
#include <sys/types.h>

namespace vexacm_tool {

/// A forked process that runs plug-in code: leader of a group of its own, with
/// nothing to read, without core files, and gone when its parent is. It is killed
/// with its group and reaped at the end of its life here.
class Child {
public:
    /// `run` is the child's whole life. Throws std::system_error.
    explicit Child(const std::function<void()>& run);
    ~Child();
    Child(Child&&) = default;
    Child(const Child&) = delete;

    /// Readable when it has ended, for poll().
    int descriptor() const { return process_.get(); }

    void kill() const;

    /// Waits for its end.
    struct Ending {
        Outcome outcome; ///< crashed or exited
        std::string detail;
        bool is_success; ///< exit status 0
    };
    Ending wait();

private:
    struct Id {
        Id() = default;
        Id(Id&& other) noexcept : number(std::exchange(other.number, -1)) {}
        pid_t number = -1;
    };

    Id id_;
    Descriptor process_;
};

} // namespace vexacm_tool
