// SPDX-License-Identifier: MIT
#pragma once

/// Makes one allocation of the process fail, the library's included: the
/// `number`th from now on, the first being 1. Ends with the object.
class Failing_allocation {
public:
    explicit Failing_allocation(long number);
    ~Failing_allocation();
    Failing_allocation(const Failing_allocation&) = delete;
    Failing_allocation& operator=(const Failing_allocation&) = delete;

    /// Whether it came to that allocation.
    static bool has_failed();
};
