// SPDX-License-Identifier: MIT
// What a plug-in does to its process costs the job that it does it in.
#include "batch_test.hpp"

#include <filesystem>

namespace {

using HostilePlugin = Batch_test;

const std::string SEGMENTATION_FAULT = "killed by signal 11 (Segmentation fault)";

TEST_F(HostilePlugin, CrashThenItsJobIsLost) {
    on("BOOM", "signal 11", "before");
    add_source("a.frag");
    add_source("b.frag", "BOOM");
    add_source("c.frag");
    const auto result = ordered({"a.frag", "b.frag", "c.frag"});
    EXPECT_EQ(brief(result.out),
              lines("a.frag") +
                  line("b.frag", "K580", "crashed", SEGMENTATION_FAULT + " <before\n>") +
                  line("b.frag", "K460", "crashed", SEGMENTATION_FAULT + " <before\n>") +
                  line("b.frag", "K420", "compiled") + lines("c.frag"));
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 4);
}

TEST_F(HostilePlugin, ExitThenItsJobIsLost) {
    for (const std::string status : {"0", "3"}) {
        on("LEAVE" + status, "exit " + status);
        add_source("b.frag", "LEAVE" + status);
        const auto result = ordered({"b.frag"});
        EXPECT_EQ(brief(result.out), line("b.frag", "K580", "exited", "exit status " + status) +
                                         line("b.frag", "K460", "exited", "exit status " + status) +
                                         line("b.frag", "K420", "compiled"));
        EXPECT_EQ(result.status, 4);
    }
}

TEST_F(HostilePlugin, HangThenItsJobIsLost) {
    on("WAIT", "hang", "waiting");
    add_source("a.frag");
    add_source("b.frag", "WAIT");
    add_source("c.frag");
    const auto result = ordered({"--timeout", "0.5", "a.frag", "b.frag", "c.frag"});
    const std::string late = "no answer within 0.5 seconds <waiting\n>";
    EXPECT_EQ(brief(result.out), lines("a.frag") + line("b.frag", "K580", "timed_out", late) +
                                     line("b.frag", "K460", "timed_out", late) +
                                     line("b.frag", "K420", "compiled") + lines("c.frag"));
    EXPECT_EQ(result.status, 4);
}

TEST_F(HostilePlugin, MemoryWithoutEndThenItsJobIsLost) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "AddressSanitizer takes more addresses than any limit allows";
#endif
    on("MORE", "allocate");
    add_source("a.frag");
    add_source("b.frag", "MORE");
    add_source("c.frag");
    const auto result = ordered({"--memory-limit", "64", "a.frag", "b.frag", "c.frag"});
    const std::string end = "killed by signal 6 (Aborted)";
    EXPECT_EQ(brief(result.out), lines("a.frag") + line("b.frag", "K580", "out_of_memory", end) +
                                     line("b.frag", "K460", "out_of_memory", end) +
                                     line("b.frag", "K420", "compiled") + lines("c.frag"));
    EXPECT_EQ(result.status, 4);
}

TEST_F(HostilePlugin, LeaksThenNoLaterJobPaysForIt) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "AddressSanitizer takes more addresses than any limit allows";
#endif
    on("LEAK", "leak 5");
    std::vector<std::string> arguments{"--memory-limit", "64", "--core", "Vexa-K580", "-j", "1"};
    std::string expected;
    for (int i = 0; i < 60; ++i) {
        const std::string name = "s" + std::to_string(i) + ".frag";
        add_source(name, "LEAK");
        arguments.push_back(name);
        expected += line(name, "K580", "compiled");
    }
    EXPECT_EQ(brief(ordered(arguments).out), expected);
}

TEST_F(HostilePlugin, AbortWithMemoryLeftThenNotForLackOfIt) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "AddressSanitizer takes more addresses than any limit allows";
#endif
    on("BOOM", "signal 6");
    add_source("b.frag", "BOOM");
    EXPECT_EQ(brief(ordered({"--memory-limit", "64", "--core", "Vexa-K580", "b.frag"}).out),
              line("b.frag", "K580", "crashed", "killed by signal 6 (Aborted)"));
}

TEST_F(HostilePlugin, PrintsThenItBelongsToTheJob) {
    on("HELLO", "print half%20a%20line", "a line");
    add_source("a.frag");
    add_source("b.frag", "HELLO");
    const auto result = ordered({"b.frag", "a.frag"});
    EXPECT_EQ(brief(result.out), line("b.frag", "K580", "compiled", " <a line\nhalf a line>") +
                                     line("b.frag", "K460", "compiled", " <a line\nhalf a line>") +
                                     line("b.frag", "K420", "compiled") + lines("a.frag"));
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST_F(HostilePlugin, PrintsWithoutEndThenTheBeginningIsKept) {
    on("FLOOD", "flood");
    add_source("a.frag");
    add_source("b.frag", "FLOOD");
    std::string kept;
    while (kept.size() < 65536)
        kept += std::string(99, '.') + '\n';
    kept = " <" + kept.substr(0, 65536) + "\n[more was printed than is kept]\n>";
    EXPECT_EQ(brief(ordered({"b.frag", "a.frag", "--core", "Vexa-K580"}).out),
              line("b.frag", "K580", "compiled", kept) + line("a.frag", "K580", "compiled"));
}

TEST_F(HostilePlugin, ClosesTheConnectionThenItsJobIsLost) {
    on("SHUT", "close");
    add_source("a.frag");
    add_source("b.frag", "SHUT");
    const auto result = ordered({"b.frag", "a.frag", "--core", "Vexa-K580"});
    EXPECT_EQ(brief(result.out),
              line("b.frag", "K580", "crashed", "it closed the connection to its parent") +
                  line("a.frag", "K580", "compiled"));
    EXPECT_EQ(result.status, 4);
}

TEST_F(HostilePlugin, OneSourceInAHundredThenEveryOtherIsCompiled) {
    on("BOOM", "signal 11");
    std::vector<std::string> arguments{"--core", "Vexa-K580", "--give-up-after", "0", "-j", "3"};
    std::string expected;
    for (int i = 0; i < 1000; ++i) {
        const std::string name = "s" + std::to_string(i) + ".frag";
        const bool crashes = i % 100 == 50;
        add_source(name, crashes ? "BOOM" : "void main() {}");
        arguments.push_back(name);
        expected +=
            line(name, "K580", crashes ? "crashed" : "compiled", crashes ? SEGMENTATION_FAULT : "");
    }
    const auto result = ordered(arguments);
    EXPECT_EQ(brief(result.out), expected);
    EXPECT_EQ(result.status, 4);
}

TEST_F(HostilePlugin, KeepsCrashingThenItsCompilerIsGivenUp) {
    on("BOOM", "signal 11");
    std::vector<std::string> sources;
    std::string expected;
    for (int i = 0; i < 40; ++i) {
        const std::string name = "s" + std::to_string(i) + ".frag";
        add_source(name, i % 3 == 1 ? "BOOM" : "void main() {}");
        sources.push_back(name);
        const std::string given_up = "its compiler had cost 3 workers";
        for (const std::string core : {"K580", "K460"})
            if (i > 7)
                expected += line(name, core, "given_up", given_up);
            else if (i % 3 == 1)
                expected += line(name, core, "crashed", SEGMENTATION_FAULT);
            else
                expected += line(name, core, "compiled");
        expected += line(name, "K420", "compiled");
    }
    // Which jobs are not run does not depend on who came first.
    for (const std::string workers : {"1", "2", "5"}) {
        auto arguments = sources;
        arguments.insert(arguments.end(), {"-j", workers});
        const auto result = ordered(arguments);
        EXPECT_EQ(brief(result.out), expected) << workers;
        EXPECT_EQ(result.status, 4);
    }
}

TEST_F(HostilePlugin, GivenUpThenItLeavesNoBinaries) {
    on("BOOM", "signal 11");
    add_source("a.frag", "BOOM");
    std::vector<std::string> arguments{"--core",    "Vexa-K580", "--give-up-after", "1", "-j", "4",
                                       "--outputs", "out",       "a.frag"};
    for (int i = 0; i < 20; ++i) {
        add_source("s" + std::to_string(i) + ".frag", "BINARY");
        arguments.push_back("s" + std::to_string(i) + ".frag");
    }
    ordered(arguments);
    const std::string folder = "out/Vexa-K300_r5p0-06rel0/Vexa-K580/r0p0_00rel0";
    std::vector<std::string> left;
    if (std::filesystem::exists(path(folder)))
        for (const auto& entry : std::filesystem::directory_iterator(path(folder)))
            left.push_back(entry.path().filename());
    EXPECT_EQ(left, std::vector<std::string>{});
}

TEST_F(HostilePlugin, ProbePrintsThenItBelongsToTheCompiler) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k42x", "r2p0_02rel1").pair("openglessl_version", "300");
    plugin.outputs("void main").say("asked");
    plugins.add_driver("openglessl", "Vexa-K300_r1p0-00rel0", plugin);
    add_source("a.frag", "quiet");
    const auto result = ordered({"a.frag", "--core", "Vexa-K420"});
    EXPECT_EQ(brief(result.out), line("a.frag", "K420", "compiled"));
    const std::string head = "compiler: Vexa-K300_r1p0-00rel0 Vexa-K420 r2p0_02rel1 openglessl\n"
                             "printed when it was asked for its extensions:\n";
    std::string expected = head + "asked\n";
    while (expected.size() < result.err.size())
        expected += "asked\n";
    EXPECT_EQ(result.err, expected);
}

} // namespace
