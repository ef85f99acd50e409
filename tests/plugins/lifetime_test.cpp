// SPDX-License-Identifier: MIT
// What a caller's process notices of the plug-in besides its answers.
#include "plugin_under_test.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using Texts = std::vector<std::string>;

const char* const SMALL = "void main() { gl_Position = vec4(0.0); }";

bool is_mapped() {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find("libVexa-K300_r1p0-00rel0.so") != std::string::npos)
            return true;
    }
    return false;
}

// glslang takes two thread keys each time, of 1024 that a process has.
TEST(Glsl_lifetime, ManyLoadsLeaveTheKeysOfTheProcess) {
    for (int i = 0; i < 700; ++i)
        ASSERT_EQ(compile(Request(SMALL, "vertex")).errors, Texts{}) << "load " << i;
    pthread_key_t keys[900];
    for (pthread_key_t& key : keys)
        ASSERT_EQ(pthread_key_create(&key, nullptr), 0);
}

TEST(Glsl_lifetime, ClosedPluginIsUnmapped) {
    {
        const Open_plugin plugin(GLSL_PLUGIN_FILE);
        compile(plugin, Request(SMALL, "vertex"));
        EXPECT_TRUE(is_mapped());
    }
    EXPECT_FALSE(is_mapped());
}

TEST(Glsl_lifetime, UnusedPluginIsUnmapped) {
    { const Open_plugin plugin(GLSL_PLUGIN_FILE); }
    EXPECT_FALSE(is_mapped());
}

TEST(Glsl_lifetime, OutputsStayUntilReleased) {
    const Open_plugin plugin(GLSL_PLUGIN_FILE);
    const char* options[] = {"shader_type", "vertex"};
    vexaoc_inputs inputs = {"void main() { x; }", 2, options, "k46x", "r0p0_00rel0", 1};
    vexaoc_outputs first = {};
    vexaoc_outputs second = {};
    ASSERT_EQ(plugin.compile(&inputs, &first), VEXAOC_SUCCESS);
    inputs.source = "void main() { y; }";
    ASSERT_EQ(plugin.compile(&inputs, &second), VEXAOC_SUCCESS);
    plugin.release_outputs(&second);
    ASSERT_EQ(first.num_strings_a, 1U);
    EXPECT_STREQ(first.strings_a[0], "ERROR: 0:1: 'x' : undeclared identifier");
    plugin.release_outputs(&first);
}

void* call(void* task) {
    (*static_cast<std::function<void()>*>(task))();
    return nullptr;
}

void run_with_stack(std::size_t size, std::function<void()> task) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, call, &task), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST(Glsl_lifetime, ThreadWithASmallStackCompiles) {
    const Open_plugin plugin(GLSL_PLUGIN_FILE);
    const Request request(shader_file("lit_300.frag"), "fragment");
    Compiled compiled;
    run_with_stack(std::size_t{128} << 10U, [&] { compiled = compile(plugin, request); });
    EXPECT_EQ(compiled.errors, Texts{});
    EXPECT_FALSE(compiled.binary.empty());
}

TEST(Glsl_lifetime, ThreadsTakeTurns) {
    const Open_plugin plugin(GLSL_PLUGIN_FILE);
    for (int i = 0; i < 20; ++i) {
        Compiled compiled;
        run_with_stack(std::size_t{128} << 10U,
                       [&] { compiled = compile(plugin, Request(SMALL, "vertex")); });
        EXPECT_EQ(compiled.errors, Texts{});
    }
}

// Everything that arrives at a file descriptor while the task runs.
std::string printed_by(int descriptor, const std::function<void()>& task) {
    std::FILE* file = std::tmpfile();
    std::fflush(nullptr);
    const int kept = dup(descriptor);
    dup2(fileno(file), descriptor);
    task();
    std::fflush(nullptr);
    dup2(kept, descriptor);
    close(kept);
    std::rewind(file);
    std::string printed;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file))
        printed += static_cast<char>(c);
    std::fclose(file);
    return printed;
}

void compile_all_kinds() {
    const Open_plugin plugin(GLSL_PLUGIN_FILE);
    compile(plugin, Request(shader_file("lit_300.frag"), "fragment"));
    compile(plugin, Request(shader_file("particles_310.comp"), "compute"));
    for (const char* broken : {"broken_names.frag", "broken_version.frag", "broken_stage.vert"})
        compile(plugin, Request(shader_file(broken), "fragment"));
    compile(plugin, Request("#extension X\n#pragma \xff\n#if (\n\"", "fragment"));
    compile(plugin, Request(SMALL, "vertex").with("unknown", "x"));
}

TEST(Glsl_lifetime, NothingIsPrinted) {
    EXPECT_EQ(printed_by(STDOUT_FILENO, compile_all_kinds), "");
    EXPECT_EQ(printed_by(STDERR_FILENO, compile_all_kinds), "");
}

std::size_t mapped_bytes() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

TEST(Glsl_lifetime, NoRoomForTheThreadIsAMemoryError) {
    const Open_plugin plugin(GLSL_PLUGIN_FILE);
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_AS, &before), 0);
    rlimit tight = before;
    tight.rlim_cur = mapped_bytes() + (std::size_t{100} << 20U);
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    const int result = compile(plugin, Request(SMALL, "vertex")).result;
    ASSERT_EQ(setrlimit(RLIMIT_AS, &before), 0);
    EXPECT_EQ(result, VEXAOC_MEMORY_ERROR);
    EXPECT_EQ(compile(plugin, Request(SMALL, "vertex")).result, VEXAOC_SUCCESS);
}

} // namespace
