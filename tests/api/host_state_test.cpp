// SPDX-License-Identifier: MIT
#include <cerrno>
#include <iomanip>
#include <iostream>
#include <locale>

#include <unistd.h>

#include "api_test.hpp"
#include "diagnostics.hpp"

namespace {

// What the host program has done to std::cerr and to the locale.
using HostState = Diagnostics_test;

class Grouping : public std::numpunct<char> {
    char do_thousands_sep() const override { return '\''; }
    std::string do_grouping() const override { return "\1"; }
    char do_decimal_point() const override { return ';'; }
};

std::locale grouping_locale() {
    return std::locale(std::locale::classic(), new Grouping);
}

// Puts the locale and std::cerr back.
class Kept_state {
public:
    Kept_state() : format(nullptr), state(std::cerr.rdstate()) { format.copyfmt(std::cerr); }
    ~Kept_state() {
        std::locale::global(locale);
        std::cerr.exceptions(std::ios::goodbit);
        std::cerr.rdbuf(buffer);
        std::cerr.clear(state);
        std::cerr.copyfmt(format);
    }
    Kept_state(const Kept_state&) = delete;
    Kept_state& operator=(const Kept_state&) = delete;

private:
    std::locale locale;
    std::ios format;
    std::ios::iostate state;
    std::streambuf* buffer = std::cerr.rdbuf();
};

TEST_F(HostState, DiagnosticsAreTheExpectedOnes) {
    EXPECT_EQ(stderr_of([&] { make_diagnostics(); }), expected_diagnostics());
}

TEST_F(HostState, AGlobalLocaleWithGroupingChangesNothing) {
    const Kept_state kept;
    std::locale::global(grouping_locale());
    EXPECT_EQ(stderr_of([&] { make_diagnostics(); }), expected_diagnostics());
}

TEST_F(HostState, AGlobalLocaleWithGroupingChangesNoCatalogueAndNoProbe) {
    const Kept_state kept;
    std::locale::global(grouping_locale());
    Fake_plugin plugin = gles_plugin("1234567", nullptr);
    plugin.core("k58x", "r1p2_1234rel5").core("k58x", "r1p2_1233rel5");
    One_plugin one(plugin);
    EXPECT_EQ(find_compilers({nullptr, nullptr, nullptr, nullptr, nullptr, 1234567}),
              (std::vector<unsigned int>{0, 1, 2}));
    EXPECT_EQ(vexacm_get_highest_api_version(2), 1234567u);
    EXPECT_STREQ(vexacm_get_core_revision(0), "r1p2_1234rel5");
    EXPECT_NE(std::string(vexacm_get_extensions(2)), "");
    const std::string log = one.take_calls();
    EXPECT_EQ(lines_of(log, "compile "), lines_of(log, "source=#version%201234567%20es%0A"));
}

TEST_F(HostState, AnErrorNumberOfTheHostChangesNothing) {
    EXPECT_EQ(stderr_of([&] {
                  errno = ERANGE;
                  make_diagnostics();
              }),
              expected_diagnostics());
}

TEST_F(HostState, ALocaleOfTheStreamChangesNothing) {
    const Kept_state kept;
    std::cerr.imbue(grouping_locale());
    EXPECT_EQ(stderr_of([&] { make_diagnostics(); }), expected_diagnostics());
}

TEST_F(HostState, FlagsChangeNothingAndStay) {
    const Kept_state kept;
    std::cerr << std::hex << std::showbase << std::showpos << std::left << std::uppercase
              << std::setfill('*') << std::setw(100) << std::setprecision(1);
    const auto flags = std::cerr.flags();
    EXPECT_EQ(stderr_of([&] { make_diagnostics(); }), expected_diagnostics());
    EXPECT_EQ(std::cerr.flags(), flags);
    EXPECT_EQ(std::cerr.width(), 100);
    EXPECT_EQ(std::cerr.fill(), '*');
    EXPECT_EQ(std::cerr.precision(), 1);
}

TEST_F(HostState, AFailedStateChangesNothingAndStays) {
    const Kept_state kept;
    for (const auto state : {std::ios::failbit, std::ios::badbit, std::ios::eofbit,
                             std::ios::failbit | std::ios::badbit | std::ios::eofbit}) {
        std::cerr.clear(state);
        EXPECT_EQ(stderr_of([&] { make_diagnostics(); }), expected_diagnostics());
        EXPECT_EQ(std::cerr.rdstate(), state);
    }
}

#ifdef __GLIBCXX__ // others end the process
TEST_F(HostState, ANullTextWrittenBeforeChangesNothing) {
    const Kept_state kept;
    const char* volatile null_text = nullptr;
    std::cerr << null_text;
    EXPECT_TRUE(std::cerr.bad());
    EXPECT_EQ(stderr_of([&] { make_diagnostics(); }), expected_diagnostics());
}
#endif

TEST_F(HostState, AStreamThatThrowsChangesNothing) {
    const Kept_state kept;
    std::cerr.exceptions(std::ios::failbit | std::ios::badbit | std::ios::eofbit);
    EXPECT_EQ(stderr_of([&] { make_diagnostics(); }), expected_diagnostics());
}

TEST_F(HostState, WithoutABufferNothingIsWrittenAndAllElseWorks) {
    const Kept_state kept;
    std::cerr.rdbuf(nullptr);
    EXPECT_EQ(stderr_of([&] { make_diagnostics(); }), "");
    EXPECT_EQ(initialise(), "");
    EXPECT_NE(catalogue(), "");
}

TEST_F(HostState, AClosedStandardErrorIsNoFailure) {
    const int saved = dup(2);
    close(2);
    make_diagnostics();
    dup2(saved, 2);
    close(saved);
    EXPECT_EQ(stderr_of([&] { make_diagnostics(); }), expected_diagnostics());
}

} // namespace
