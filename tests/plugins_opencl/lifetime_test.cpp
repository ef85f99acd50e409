// SPDX-License-Identifier: MIT
// What a caller's process notices of the plug-in besides its answers.
#include "opencl_test.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <memory>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

const char* const SMALL = "kernel void k(global int* p) { p[0] = 1; }";

bool is_mapped() {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find(OPENCL_PLUGIN_FILE) != std::string::npos)
            return true;
    }
    return false;
}

TEST(Opencl_lifetime, ClosedPluginIsUnmapped) {
    {
        const Open_plugin plugin;
        compile(plugin, Request(SMALL));
        EXPECT_TRUE(is_mapped());
    }
    EXPECT_FALSE(is_mapped());
}

TEST(Opencl_lifetime, UnusedPluginIsUnmapped) {
    { const Open_plugin plugin; }
    EXPECT_FALSE(is_mapped());
}

TEST(Opencl_lifetime, OutputsStayUntilReleased) {
    const Open_plugin plugin;
    const char* options[] = {"shader_type", "kernel"};
    vexaoc_inputs inputs = {"kernel void k() { x; }", 2, options, "k46x", "r0p0_00rel0", 1};
    vexaoc_outputs first = {};
    vexaoc_outputs second = {};
    ASSERT_EQ(plugin.compile(&inputs, &first), VEXAOC_SUCCESS);
    inputs.source = "kernel void k() { y; }";
    ASSERT_EQ(plugin.compile(&inputs, &second), VEXAOC_SUCCESS);
    plugin.release_outputs(&second);
    ASSERT_EQ(first.num_strings_a, 1U);
    EXPECT_STREQ(first.strings_a[0], "1:19: error: use of undeclared identifier 'x'");
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

TEST(Opencl_lifetime, ThreadWithASmallStackCompiles) {
    const Open_plugin plugin;
    const Request request(kernel_file("table_120.cl"));
    Compiled compiled;
    run_with_stack(std::size_t{128} << 10U, [&] { compiled = compile(plugin, request); });
    EXPECT_EQ(compiled.errors, Texts{});
    EXPECT_FALSE(compiled.binary.empty());
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
    const Open_plugin plugin;
    for (const char* name :
         {"table_120.cl", "broken_names.cl", "broken_language.cl", "warnings.cl"})
        compile(plugin, Request(kernel_file(name)));
    compile(plugin, Request("#pragma \xff\n#pragma unknown\n#if (\n\""));
    compile(plugin,
            Request("#pragma message \"loud\"\n#warning louder\n#pragma GCC warning \"x\""));
    compile(plugin, Request("#define A 1\n#pragma clang __debug macro A\n"
                            "#pragma clang __debug diag_mapping\n#pragma clang __debug sloc_usage\n"
                            "#pragma clang __debug dump A\n_Pragma(\"clang __debug macro A\")"));
    compile(plugin, Request("kernel void k(int n) { int a[n]; a[0] = 1; }"));
    compile(plugin, Request(SMALL).with("unknown", "x"));
    compile(plugin, Request(SMALL).with("kernel_name", "x"));
}

TEST(Opencl_lifetime, NothingIsPrinted) {
    EXPECT_EQ(printed_by(STDOUT_FILENO, compile_all_kinds), "");
    EXPECT_EQ(printed_by(STDERR_FILENO, compile_all_kinds), "");
}

bool has_handler(int signal) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler != SIG_DFL;
}

TEST(Opencl_lifetime, SignalsAreLeftAlone) {
    const int signals[] = {SIGSEGV, SIGABRT, SIGBUS, SIGILL, SIGFPE, SIGPIPE, SIGINT, SIGTERM};
    bool before[std::size(signals)];
    for (std::size_t i = 0; i < std::size(signals); ++i)
        before[i] = has_handler(signals[i]);
    const Open_plugin plugin;
    compile(plugin, Request(SMALL));
    for (std::size_t i = 0; i < std::size(signals); ++i)
        EXPECT_EQ(has_handler(signals[i]), before[i]) << strsignal(signals[i]);
}

#ifndef __SANITIZE_ADDRESS__
std::size_t mapped_bytes() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

TEST(Opencl_lifetime, NoRoomForTheThreadIsAMemoryError) {
    const Open_plugin plugin;
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_AS, &before), 0);
    rlimit tight = before;
    tight.rlim_cur = mapped_bytes() + (std::size_t{100} << 20U);
    ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
    const int result = compile(plugin, Request(SMALL)).result;
    ASSERT_EQ(setrlimit(RLIMIT_AS, &before), 0);
    EXPECT_EQ(result, VEXAOC_MEMORY_ERROR);
    EXPECT_EQ(compile(plugin, Request(SMALL)).result, VEXAOC_SUCCESS);
}
#endif

#ifdef GLSL_PLUGIN_FILE
void expect_kernel_compiles(const Open_plugin& plugin) {
    EXPECT_EQ(compile(plugin, Request(SMALL)).errors, Texts{});
}

void expect_shader_compiles(const Open_plugin& plugin) {
    Request request("void main() { x; }");
    request.options = {{"shader_type", "vertex"}, {"compiler_type", "openglessl"}};
    EXPECT_EQ(compile(plugin, request).errors, Texts{"ERROR: 0:1: 'x' : undeclared identifier"});
}

using Owner = std::unique_ptr<Open_plugin>;

// Bits: who is opened first, who is closed first, who is used first.
class Opencl_beside_glsl : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Orders, Opencl_beside_glsl, testing::Range(0, 8));

TEST_P(Opencl_beside_glsl, AnyOrderWorks) {
    const bool opened_first = (GetParam() & 1) != 0;
    const bool closed_first = (GetParam() & 2) != 0;
    const bool used_first = (GetParam() & 4) != 0;
    for (int round = 0; round < 3; ++round) {
        Owner kernels = opened_first ? std::make_unique<Open_plugin>() : nullptr;
        Owner shaders = std::make_unique<Open_plugin>(GLSL_PLUGIN_FILE);
        if (!opened_first)
            kernels = std::make_unique<Open_plugin>();
        if (used_first)
            expect_kernel_compiles(*kernels);
        expect_shader_compiles(*shaders);
        expect_kernel_compiles(*kernels);
        (closed_first ? kernels : shaders).reset();
        if (kernels)
            expect_kernel_compiles(*kernels);
        if (shaders)
            expect_shader_compiles(*shaders);
    }
    EXPECT_FALSE(is_mapped());
}
#endif

} // namespace
