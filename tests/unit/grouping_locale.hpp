// SPDX-License-Identifier: MIT
#pragma once

#include <locale>
#include <string>

/// Makes the global C++ locale, as long as it lives, one that groups every
/// digit by itself, writes a comma between them, and takes a point for a comma.
class Grouping_locale {
public:
    Grouping_locale()
        : previous(std::locale::global(std::locale(std::locale::classic(), new Grouping))) {}
    ~Grouping_locale() { std::locale::global(previous); }
    Grouping_locale(const Grouping_locale&) = delete;
    Grouping_locale& operator=(const Grouping_locale&) = delete;

private:
    class Grouping : public std::numpunct<char> {
        char do_thousands_sep() const override { return ','; }
        char do_decimal_point() const override { return ';'; }
        std::string do_grouping() const override { return "\1"; }
    };

    std::locale previous;
};
