// SPDX-License-Identifier: MIT
#include "scenario.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <new>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace {

enum Status { FAILED_AS_EXPECTED = 0, WRONG = 1, PASSED_UNTOUCHED = 2 };

constexpr unsigned SECONDS_BEFORE_IT_HANGS = 60;

const std::string BAD_ALLOC = std::bad_alloc().what();

long failures = 0;

class Total : public testing::Environment {
    void TearDown() override { std::printf("%ld failures injected\n", failures); }
};
[[maybe_unused]] const auto* const total = testing::AddGlobalTestEnvironment(new Total);

// The exit status of a process that runs `action`, which returns it; a signal's
// number is negative.
template <class Action>
int run_in_a_process(Action action) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        alarm(SECONDS_BEFORE_IT_HANGS);
        // No _exit(): a sanitizer looks for leaks, and a profile is written.
        std::exit(action());
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
        throw std::runtime_error("cannot start a process");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::size_t count_open_files() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

long count_lines(const std::string& log, const char* part) {
    const std::string lines = lines_of(log, part);
    return std::count(lines.begin(), lines.end(), '\n');
}

} // namespace

void expect_equal(const Outcome& outcome, const Outcome& expected) {
    EXPECT_EQ(outcome.result, expected.result);
    EXPECT_EQ(outcome.err, expected.err);
    EXPECT_EQ(outcome.thrown, expected.thrown);
}

Scenario::Scenario(Plugin_directory& plugins_) : plugins(plugins_) {
    Fake_plugin plugin = gles_plugin();
    plugin.outputs("").a("error").b("warning").list().item("row").binary("bytes");
    others.add_driver("openglessl", NEWEST, plugin);
}

long Scenario::run_out_of_memory(const Outcome& whole) {
    return fail_each(Call::ALLOCATION, whole, [&](const Outcome& outcome, long) {
        if (outcome.thrown == BAD_ALLOC) {
            // What had been said until then was said in whole lines.
            EXPECT_EQ(outcome.err, whole.err.substr(0, outcome.err.size()));
            EXPECT_TRUE(outcome.err.empty() || outcome.err.back() == '\n');
            after_throw();
        } else if (after_coping) {
            after_coping(outcome);
        } else {
            expect_equal(outcome, whole);
        }
    });
}

long Scenario::fail_each(Call call, const Outcome& whole,
                         const std::function<Outcome(long number)>& expected) {
    return fail_each(call, whole, [&](const Outcome& outcome, long number) {
        expect_equal(outcome, expected(number));
    });
}

long Scenario::fail_each(Call call, const Outcome& whole, const Check& check) {
    for (long number = 1;; ++number) {
        const int status = run_in_a_process([&] { return attempt(call, number, whole, check); });
        if (status == PASSED_UNTOUCHED)
            return number - 1;
        if (status != FAILED_AS_EXPECTED) {
            ADD_FAILURE() << "when call " << number << " failed: status " << status;
            return number - 1;
        }
        ++failures;
    }
}

// Runs in a process of its own.
int Scenario::attempt(Call call, long number, const Outcome& whole, const Check& check) {
    SCOPED_TRACE("call " + std::to_string(number));
    const std::size_t open_files = count_open_files();
    before();
    Outcome outcome = act_while_failing(call, number);
    const bool failed = Failing_call::has_failed();
    if (failed)
        check(outcome, number);
    else
        expect_equal(outcome, whole);
    give_all_back();
    expect_log(outcome.thrown == BAD_ALLOC);

    before();
    expect_equal(act_while_failing(call, 0), whole);
    give_all_back();
    expect_log(false);
    expect_usable();
    EXPECT_EQ(blocks_left(), 0);
    EXPECT_EQ(count_open_files(), open_files);
    if (testing::Test::HasFailure())
        return WRONG;
    return failed ? FAILED_AS_EXPECTED : PASSED_UNTOUCHED;
}

Outcome Scenario::act_while_failing(Call call, long number) {
    std::exception_ptr exception;
    Captured_stderr captured;
    {
        const Failing_call failing(call, number);
        try {
            act();
        } catch (const std::exception&) {
            exception = std::current_exception();
        }
    }
    Outcome outcome;
    outcome.err = captured.take();
    try {
        if (exception)
            std::rethrow_exception(exception);
    } catch (const std::exception& thrown) {
        outcome.thrown = thrown.what();
    }
    outcome.result = result();
    return outcome;
}

void Scenario::give_all_back() {
    EXPECT_EQ(stderr_of([&] {
                  undo();
                  vexacm_release_libraries();
              }),
              "");
}

void Scenario::expect_log(bool threw) {
    const std::string log = plugins.take_log();
    EXPECT_EQ(count_lines(log, " load"), count_lines(log, " unload"));
    if (!keeps_records) {
        EXPECT_EQ(count_lines(log, " get_capabilities"), count_lines(log, " release_capabilities"));
    }
    const long kept = count_lines(log, " compile ") - count_lines(log, " release_outputs\n");
    EXPECT_GE(kept, 0);
    EXPECT_LE(kept, threw ? 1 : 0);
    EXPECT_EQ(lines_of(log, "outputs=dirty"), "");
}

void Scenario::expect_usable() {
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(vexacm_initialize_libraries(others.root().c_str())); }),
              "");
    EXPECT_EQ(catalogue(), "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 320\n");
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(Request())); }), "");
    EXPECT_EQ(outputs.text(), "list(row) binary(6279746573) a(error) b(warning)");
    outputs.release();
    EXPECT_EQ(stderr_of([] { vexacm_release_libraries(); }), "");
}
