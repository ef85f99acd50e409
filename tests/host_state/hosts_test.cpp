// SPDX-License-Identifier: MIT
#include <filesystem>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "host_test.hpp"
#include "process.hpp"

namespace fs = std::filesystem;

namespace {

using Host = Host_test;

TEST_F(Host, OfAnyKindThenLinesOfEachKindAreCompared) {
    const Seen seen = plain();
    for (const char* const part : {"vexacm_initialize_librariesbefore",
                                   "trying to release compilers",
                                   "Couldn't load",
                                   "Library load error",
                                   "has version 1234567.2345678.3456789",
                                   "uses flexible version 1234567.2345678.3456789",
                                   "unknown name format",
                                   "Key: foo, Value: 1234567",
                                   "NULL inputs passed to get_compilers",
                                   "NULL inputs passed to compile",
                                   "NULL inputs to string_copy",
                                   "Unknown shader type",
                                   "Only OpenCL",
                                   "to use compute",
                                   "ES 3.1 and extension",
                                   "using an OpenGL ES compiler",
                                   "at least one kernel",
                                   "support prerotate",
                                   "Core not",
                                   "Invalid",
                                   "Binary output",
                                   "memory error",
                                   "failing"})
        EXPECT_NE(seen.err.find(part), std::string::npos) << part;
    EXPECT_NE(seen.results.find("9 compilers"), std::string::npos) << seen.results;
}

TEST_F(Host, WrittenInCThenTheSame) {
    const Seen expected = plain();
    const Process_result process = run({C_HOST, plugins.root()});
    EXPECT_EQ(process.status, 0);
    EXPECT_EQ((Seen{process.out, process.err}), expected);
}

TEST_F(Host, WhoseWorkingDirectoryChangesThenTheSame) {
    const fs::path former = fs::current_path();
    fs::current_path(fs::path(plugins.root()).parent_path());
    const Seen expected = plain("root");

    Scenario scenario = {};
    scenario.root = "root";
    Seen seen = see_steps(scenario, 0, STEP_INITIALISED);
    // Where other plug-ins have these very paths.
    fs::create_directories("elsewhere/root");
    fs::copy("root/opencl", "elsewhere/root/openglessl");
    const fs::path elsewhere = fs::absolute("elsewhere");
    for (int step = STEP_INITIALISED; step < NUM_STEPS; ++step) {
        fs::current_path(step % 2 ? "/" : elsewhere);
        seen += see_step(scenario, step);
    }
    fs::current_path(former);
    EXPECT_EQ(seen, expected);
}

TEST_F(Host, ThatForksThenTheSameInBothProcesses) {
    // For each step after which it may fork.
    const Seen expected = plain();
    for (int forked_at = STEP_INITIALISED; forked_at < NUM_STEPS; ++forked_at) {
        Scenario scenario = begin_scenario();
        Seen seen = see_steps(scenario, 0, forked_at);
        const int file = memfd_create("seen", 0);
        const pid_t child = fork();
        if (child == 0) {
            Seen rest = seen;
            rest += see_steps(scenario, forked_at, NUM_STEPS);
            const bool same = rest == expected;
            if (!same)
                dprintf(file, "%s-- standard error\n%s", rest.results.c_str(), rest.err.c_str());
            // No exit handlers: they are the parent's.
            _exit(same ? 0 : 1);
        }
        int status = -1;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0) << read_file("/proc/self/fd/" + std::to_string(file));
        close(file);
        seen += see_steps(scenario, forked_at, NUM_STEPS);
        EXPECT_EQ(seen, expected);
    }
}

} // namespace
