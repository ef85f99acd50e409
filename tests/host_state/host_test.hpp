// SPDX-License-Identifier: MIT
#pragma once

#include "api_test.hpp"
#include "scenario.h"

/// What the steps of a scenario gave, one after the other.
struct Seen {
    std::string results;
    std::string err; ///< standard error

    bool operator==(const Seen& other) const {
        return results == other.results && err == other.err;
    }
    Seen& operator+=(const Seen& other) {
        results += other.results;
        err += other.err;
        return *this;
    }
};

void PrintTo(const Seen& seen, std::ostream* stream);

Seen see_step(Scenario& scenario, int step);
Seen see_steps(Scenario& scenario, int begin, int end);

/// Plug-ins that make the library say something of nearly every kind, and a
/// plain host to compare others with.
class Host_test : public Api_test {
protected:
    Host_test();

    /// A scenario on these plug-ins, to be run from its first step.
    Scenario begin_scenario() const;

    /// What the whole scenario gives to a host like any other.
    static Seen plain(const std::string& root);
    Seen plain() const { return plain(plugins.root()); }
};
