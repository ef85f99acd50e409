// SPDX-License-Identifier: MIT
// Signals to the tool and to its workers. What happens is awaited, for as long as
// the test may take.
#include "batch_test.hpp"

#include <algorithm>
#include <filesystem>

#include <unistd.h>

namespace {

class Processes : public Batch_test {
protected:
    Processes() {
        on("WAIT", "hang");
        add_source("a.frag");
        add_source("b.frag", "WAIT");
        add_source("c.frag");
    }

    /// A line of shell that does something, in the background, once the plug-in is
    /// at the source with the word in it. $$ is the tool.
    std::string meanwhile(const std::string& commands, const std::string& word = "WAIT") const {
        return "(until grep -qs '" + word + "' '" + plugins.root() +
               "/../log'; do sleep 0.02; done; " + commands + ") >/dev/null 2>&1 &";
    }

    static void expect_gone(const std::string& process) {
        ASSERT_NE(process.find_first_of("0123456789"), std::string::npos);
        const std::string status = "/proc/" + std::to_string(std::stoi(process)) + "/status";
        for (;;) {
            const std::string text = read_file(status);
            if (text.empty() || text.find("State:\tZ") != std::string::npos)
                return;
            usleep(20000);
        }
    }

    const std::string workers = "for p in $(cat /proc/$$/task/$$/children); do "
                                "grep -q vexacm /proc/$p/comm && echo $p; done";
};

TEST_F(Processes, InterruptThenWhatIsDoneIsWrittenAndTheRestCounted) {
    for (const std::string signal : {"INT", "TERM", "HUP"}) {
        plugins.take_log();
        const auto result =
            ordered({"-j", "1", "a.frag", "b.frag", "c.frag", "--core", "Vexa-K460"},
                    meanwhile("kill -" + signal + " $$"));
        EXPECT_EQ(brief(result.out), line("a.frag", "K460", "compiled") +
                                         line("b.frag", "K460", "not_run") +
                                         line("c.frag", "K460", "not_run"));
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.status, 130);
    }
}

TEST_F(Processes, InterruptWhileAPluginIsOpenedThenEnded) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.line("on-load hang");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(batch({"a.frag"}, meanwhile("kill -INT $$", "r9p0-00rel0.so load")), 130, "", "");
}

// A shell has its background processes ignore it.
TEST_F(Processes, IgnoredInterruptThenStillIgnored) {
    const auto result = ordered({"--timeout", "3", "-j", "1", "b.frag", "--core", "Vexa-K460"},
                                "trap '' INT; " + meanwhile("kill -INT $$"));
    EXPECT_EQ(brief(result.out), line("b.frag", "K460", "timed_out", "no answer within 3 seconds"));
    EXPECT_EQ(result.status, 4);
}

TEST_F(Processes, WorkerIsKilledThenItsJobIsLost) {
    const std::pair<std::string, std::string> signals[] = {{"9", "9 (Killed)"},
                                                           {"15", "15 (Terminated)"}};
    for (const auto& [signal, shown] : signals) {
        plugins.take_log();
        const auto result =
            ordered({"-j", "1", "a.frag", "b.frag", "c.frag", "--core", "Vexa-K460"},
                    meanwhile("kill -" + signal + " $(" + workers + ")"));
        EXPECT_EQ(brief(result.out),
                  line("a.frag", "K460", "compiled") +
                      line("b.frag", "K460", "crashed", "killed by signal " + shown) +
                      line("c.frag", "K460", "compiled"));
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.status, 4);
    }
}

TEST_F(Processes, EndsOfChildrenAreIgnoredByTheCallerThenTheyAreSeenAllTheSame) {
    on("BOOM", "signal 11");
    add_source("b.frag", "BOOM");
    EXPECT_EQ(
        brief(
            ordered({"b.frag", "--core", "Vexa-K460"}, "exec env --ignore-signal=CHLD \"$@\"").out),
        line("b.frag", "K460", "crashed", "killed by signal 11 (Segmentation fault)"));
}

TEST_F(Processes, ToolIsKilledThenNoWorkerStays) {
    const auto result = batch({"-j", "1", "b.frag"}, meanwhile(workers + " >worker; kill -9 $$"));
    EXPECT_EQ(result.status, 128 + 9);
    expect_gone(read_file(path("worker")));
}

TEST_F(Processes, WorkerIsLateThenItsChildrenEndWithIt) {
    on("FORK", "hang-with-child " + path("child"));
    add_source("a.frag", "FORK");
    const auto result = ordered({"--timeout", "1", "a.frag", "--core", "Vexa-K460"});
    EXPECT_EQ(brief(result.out), line("a.frag", "K460", "timed_out", "no answer within 1 second"));
    expect_gone(read_file(path("child")));
}

} // namespace
