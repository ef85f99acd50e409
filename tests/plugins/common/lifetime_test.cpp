// SPDX-License-Identifier: MIT
// What a caller's process notices of the plug-in besides its answers.
#include "plugin_test.hpp"
#include "process_state.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <filesystem>

#include <sys/resource.h>

namespace {

constexpr std::size_t SMALL_STACK = std::size_t{128} << 10U;

Request small_request() {
    return Request(with_body(SUBJECT.statement));
}

TEST(Lifetime, ClosedPluginIsUnmapped) {
    {
        const Open_plugin plugin;
        compile(plugin, small_request());
        EXPECT_TRUE(is_mapped(SUBJECT.file));
    }
    EXPECT_FALSE(is_mapped(SUBJECT.file));
}

TEST(Lifetime, UnusedPluginIsUnmapped) {
    { const Open_plugin plugin; }
    EXPECT_FALSE(is_mapped(SUBJECT.file));
}

TEST(Lifetime, OutputsStayUntilReleased) {
    const Open_plugin plugin;
    const char* options[] = {"shader_type", SUBJECT.shader_type};
    const std::string source = with_body("x;");
    const std::string other_source = with_body("y;");
    vexaoc_inputs inputs = {source.c_str(), 2, options, "k46x", "r0p0_00rel0", 1};
    vexaoc_outputs first = {};
    vexaoc_outputs second = {};
    ASSERT_EQ(plugin.compile(&inputs, &first), VEXAOC_SUCCESS);
    inputs.source = other_source.c_str();
    ASSERT_EQ(plugin.compile(&inputs, &second), VEXAOC_SUCCESS);
    plugin.release_outputs(&second);
    ASSERT_EQ(first.num_strings_a, 1U);
    EXPECT_EQ(first.strings_a[0], SUBJECT.undeclared("x", 1));
    plugin.release_outputs(&first);
}

TEST(Lifetime, ThreadWithASmallStackCompiles) {
    const Open_plugin plugin;
    for (const std::string& name : SUBJECT.clean_sources) {
        const Request request = request_for(name);
        run_with_stack(SMALL_STACK, [&] {
            const Compiled compiled = compile(plugin, request);
            EXPECT_EQ(compiled.errors, Texts{}) << name;
            EXPECT_FALSE(compiled.binary.empty()) << name;
        });
    }
}

TEST(Lifetime, ThreadsTakeTurns) {
    const Open_plugin plugin;
    for (int i = 0; i < 20; ++i)
        run_with_stack(SMALL_STACK,
                       [&] { EXPECT_EQ(compile(plugin, small_request()).errors, Texts{}); });
}

TEST(Lifetime, NothingIsPrinted) {
    EXPECT_EQ(printed_by([] {
                  const Open_plugin plugin;
                  for (const auto& file : std::filesystem::directory_iterator(SUBJECT.directory))
                      compile(plugin, request_for(file.path().filename()));
                  for (const std::string& source : SUBJECT.noisy_sources)
                      compile(plugin, Request(source));
                  compile(plugin, small_request().with("unknown", "x"));
                  compile(plugin, small_request().with("kernel_name", "x"));
              }),
              "");
}

bool has_handler(int signal) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler != SIG_DFL;
}

TEST(Lifetime, SignalsAreLeftAlone) {
    const int signals[] = {SIGSEGV, SIGABRT, SIGBUS, SIGILL, SIGFPE, SIGPIPE, SIGINT, SIGTERM};
    bool before[std::size(signals)];
    for (std::size_t i = 0; i < std::size(signals); ++i)
        before[i] = has_handler(signals[i]);
    const Open_plugin plugin;
    compile(plugin, small_request());
    for (std::size_t i = 0; i < std::size(signals); ++i)
        EXPECT_EQ(has_handler(signals[i]), before[i]) << strsignal(signals[i]);
}

TEST(Lifetime, NoRoomForTheThreadIsAMemoryError) {
    const Open_plugin plugin;
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_AS, &before), 0);
    rlimit tight = before;
    tight.rlim_cur = mapped_bytes() + (std::size_t{100} << 20U);
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    const int result = compile(plugin, small_request()).result;
    ASSERT_EQ(setrlimit(RLIMIT_AS, &before), 0);
    EXPECT_EQ(result, VEXAOC_MEMORY_ERROR);
    EXPECT_EQ(compile(plugin, small_request()).result, VEXAOC_SUCCESS);
}

} // namespace
