// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "api_test.hpp"

/// Makes the library say something of every kind, with numbers in it, short and
/// long.
class Diagnostics_test : public Api_test {
protected:
    Diagnostics_test();

    /// From an initialisation to a release and beyond.
    void make_diagnostics();

    std::string expected_diagnostics() const;

private:
    std::string long_text;
};
