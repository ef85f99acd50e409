// SPDX-License-Identifier: MIT
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <iomanip>
#include <iostream>

#include "grouping_locale.hpp"
#include "host_test.hpp"
#include "process.hpp"

namespace {

// Locales and streams that are not as at the start of a process.
using Host = Host_test;

/// Makes the C locale, as long as it lives, one that groups digits. No package
/// of locales need be there: it is compiled from the definition here.
class Grouping_c_locale {
public:
    Grouping_c_locale() {
        write_file(files.path("..", "grouping"), "LC_NUMERIC\n"
                                                 "decimal_point \";\"\n"
                                                 "thousands_sep \"'\"\n"
                                                 "grouping 1\n"
                                                 "END LC_NUMERIC\n");
        write_file(files.path("..", "ascii"), "<code_set_name> ANSI_X3.4-1968\n"
                                              "<comment_char> %\n"
                                              "<escape_char> /\n"
                                              "CHARMAP\n"
                                              "<U0000>..<U007F> /x00 ASCII\n"
                                              "END CHARMAP\n");
        // It says by its status that other categories are missing.
        run({"localedef", "--quiet", "--force", "-i", files.path("..", "grouping"), "-f",
             files.path("..", "ascii"), files.root() + "/test"});
        setenv("LOCPATH", files.root().c_str(), 1);
        EXPECT_NE(std::setlocale(LC_NUMERIC, "test"), nullptr);
        EXPECT_STREQ(std::localeconv()->thousands_sep, "'");
        EXPECT_STREQ(std::localeconv()->decimal_point, ";");
    }
    ~Grouping_c_locale() {
        std::setlocale(LC_NUMERIC, "C");
        unsetenv("LOCPATH");
    }
    Grouping_c_locale(const Grouping_c_locale&) = delete;
    Grouping_c_locale& operator=(const Grouping_c_locale&) = delete;

private:
    Plugin_directory files;
};

/// Leaves std::cerr unusable for anybody who writes to it, until its end.
class Spoiled_stream {
public:
    Spoiled_stream() : format(nullptr) {
        format.copyfmt(std::cerr);
        std::cerr << std::hex << std::showbase << std::showpos << std::left << std::uppercase
                  << std::setfill('*') << std::setw(100) << std::setprecision(1);
        std::cerr.imbue(std::locale());
        std::cerr.setstate(std::ios::failbit | std::ios::badbit | std::ios::eofbit);
        try {
            std::cerr.exceptions(std::ios::failbit | std::ios::badbit | std::ios::eofbit);
        } catch (const std::ios::failure&) {
            // It throws at once, and does throw from now on.
        }
    }
    ~Spoiled_stream() {
        std::cerr.exceptions(std::ios::goodbit);
        std::cerr.clear();
        std::cerr.copyfmt(format);
    }
    Spoiled_stream(const Spoiled_stream&) = delete;
    Spoiled_stream& operator=(const Spoiled_stream&) = delete;

private:
    std::ios format;
};

TEST_F(Host, WithACLocaleThatGroupsDigitsThenTheSame) {
    const Seen expected = plain();
    const Grouping_c_locale locale;
    EXPECT_EQ(plain(), expected);
}

TEST_F(Host, WithACxxLocaleThatGroupsDigitsThenTheSame) {
    const Seen expected = plain();
    const Grouping_locale locale;
    EXPECT_EQ(plain(), expected);
}

TEST_F(Host, WithASpoiledStreamThenTheSame) {
    const Seen expected = plain();
    const Spoiled_stream stream;
    EXPECT_EQ(plain(), expected);
    EXPECT_TRUE(std::cerr.bad());
    EXPECT_EQ(std::cerr.width(), 100);
}

TEST_F(Host, WithAllOfItThenTheSame) {
    const Seen expected = plain();
    const Grouping_c_locale c_locale;
    const Grouping_locale cxx_locale;
    const Spoiled_stream stream;
    errno = ERANGE;
    EXPECT_EQ(plain(), expected);
}

TEST_F(Host, ThatChangesItAllInBetweenThenTheSame) {
    const Seen expected = plain();
    Scenario scenario = begin_scenario();
    Seen seen;
    for (int step = 0; step < NUM_STEPS; ++step) {
        if (step % 2 == 0) {
            seen += see_step(scenario, step);
            continue;
        }
        const Grouping_c_locale c_locale;
        const Grouping_locale cxx_locale;
        const Spoiled_stream stream;
        seen += see_step(scenario, step);
    }
    EXPECT_EQ(seen, expected);
}

} // namespace
