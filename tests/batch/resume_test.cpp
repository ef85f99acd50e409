// SPDX-License-Identifier: MIT
// A run that was ended, and brought to its end: the bytes of one that was not.
#include "run_files.hpp"

#include "result.hpp"

#include <algorithm>
#include <filesystem>
#include <random>

namespace {

class Resume : public Run_files {
protected:
    Process_result resume(const Arguments& arguments, const std::string& text,
                          const std::string& setup = "") const {
        Arguments all = arguments;
        all.insert(all.end(), {"--resume", file("done", text)});
        return ordered(all, setup);
    }

    /// What is left of a run when the tool is killed once that has come to pass.
    std::string killed(Arguments arguments, const std::string& until) const {
        arguments.insert(arguments.begin(), "--json");
        const auto result = batch(arguments, "(" + until + "; kill -9 $$) >/dev/null 2>&1 &");
        EXPECT_EQ(result.status, 128 + 9);
        return result.out;
    }

    std::size_t compiled_count() { return split(take_requests()).size(); }
};

TEST_F(Resume, AnyPartIsDoneThenTheBytesOfOneRun) {
    const Arguments arguments = sources();
    const Everything once = one_run(arguments);
    std::vector<std::string> lines = split(once.lines);
    for (unsigned int seed = 0; seed < 40; ++seed) {
        std::mt19937 dice(seed);
        std::shuffle(lines.begin(), lines.end(), dice);
        const std::size_t count = dice() % (lines.size() + 1);
        std::string done;
        std::size_t to_compile = 0;
        for (std::size_t i = 0; i < lines.size(); ++i)
            if (i < count)
                done += lines[i];
            else
                to_compile += lines[i].find("unreadable") == std::string::npos;
        take_requests();
        const auto result = resume(arguments, done);
        EXPECT_EQ(result.out, once.lines) << seed;
        EXPECT_EQ(result.status, once.status);
        EXPECT_EQ(compiled_count(), to_compile);
    }
    Arguments again = arguments;
    again.insert(again.end(), {"--resume", "done"});
    EXPECT_TRUE(one_run(again) == once);
}

TEST_F(Resume, CompilerIsGivenUpThenTheBytesOfOneRun) {
    on("BOOM", "signal 11", "before");
    Arguments arguments{"-j", "3"};
    for (int i = 0; i < 20; ++i) {
        arguments.push_back("s" + std::to_string(i) + ".frag");
        add_source(arguments.back(), i % 5 == 3 ? "BOOM" : "void main() {}");
    }
    const std::string once = ordered(arguments).out;
    // A shard gives up later, or never.
    std::vector<std::string> lines = split(once);
    for (int number = 1; number <= 3; ++number)
        for (const std::string& line : split(read_file(path(shard(number, 3, arguments)))))
            lines.push_back(line);
    for (unsigned int seed = 0; seed < 20; ++seed) {
        std::mt19937 dice(seed);
        std::shuffle(lines.begin(), lines.end(), dice);
        std::string done;
        for (std::size_t i = dice() % lines.size(); i < lines.size(); ++i)
            done += lines[i];
        EXPECT_EQ(resume(arguments, done).out, once) << seed;
    }
}

TEST_F(Resume, LastLineIsCutThenItsJobRunsAgain) {
    const Arguments arguments = sources();
    const std::string once = ordered(arguments).out;
    for (std::size_t size = 0; size < once.size(); size += 97)
        EXPECT_EQ(resume(arguments, once.substr(0, size)).out, once) << size;
}

TEST_F(Resume, InterruptedThenTheBytesOfOneRun) {
    on("WAIT", "hang");
    for (const std::string name : {"a.frag", "c.frag", "d.frag"})
        add_source(name);
    add_source("b.frag", "WAIT");
    const Arguments arguments{"a.frag", "b.frag", "c.frag", "d.frag", "--timeout", "1"};
    const std::string until_it_waits =
        "until grep -qs WAIT '" + plugins.root() + "/../log'; do sleep 0.02; done";
    const std::string once = ordered(arguments).out;
    EXPECT_NE(once.find("timed_out"), std::string::npos);
    Arguments slow = arguments;
    slow.back() = "1000";
    plugins.take_log();
    const auto interrupted =
        ordered(slow, "(" + until_it_waits + "; kill -INT $$) >/dev/null 2>&1 &");
    EXPECT_EQ(interrupted.status, 130);
    EXPECT_NE(interrupted.out.find("not_run"), std::string::npos);
    EXPECT_EQ(resume(arguments, interrupted.out).out, once);

    // What was done before is not lost when it is interrupted again.
    const std::string last = split(once).back();
    plugins.take_log();
    const auto again =
        resume(slow, last, "(" + until_it_waits + "; kill -INT $$) >/dev/null 2>&1 &");
    EXPECT_EQ(again.status, 130);
    EXPECT_EQ(split(again.out).back(), last);

    plugins.take_log();
    EXPECT_EQ(resume(arguments, killed(slow, until_it_waits)).out, once);
}

TEST_F(Resume, WorkerIsKilledThenItsJobRunsAgain) {
    on("WAIT", "hang");
    add_source("a.frag");
    add_source("b.frag", "WAIT");
    const Arguments arguments{"a.frag", "b.frag", "--core", "Vexa-K460", "--timeout", "1"};
    const std::string once = ordered(arguments).out;
    Arguments slow = arguments;
    slow.back() = "1000";
    plugins.take_log();
    const std::string left =
        ordered(slow, "(until grep -qs WAIT '" + plugins.root() +
                          "/../log'; do sleep 0.02; done; for p in $(cat "
                          "/proc/$$/task/$$/children); do grep -q vexacm /proc/$p/comm && "
                          "kill -9 $p; done) >/dev/null 2>&1 &")
            .out;
    EXPECT_EQ(brief(left), line("a.frag", "K460", "compiled") +
                               line("b.frag", "K460", "crashed", "killed by signal 9 (Killed)"));
    EXPECT_EQ(resume(arguments, left).out, once);
}

TEST_F(Resume, KilledAtAnyTimeThenWholeLinesAndTheBytesOfOneRun) {
    Arguments arguments;
    for (int i = 0; i < 300; ++i) {
        arguments.push_back("s" + std::to_string(i) + ".frag");
        add_source(arguments.back(), i % 7 == 0 ? "ERROR" : "WARN");
    }
    const std::string once = ordered(arguments).out;
    const std::vector<std::string> lines = split(once);
    for (int tens = 1; tens <= 12; ++tens) {
        std::string left = file("left", "");
        const std::string delay = "sleep 0.0" + std::to_string(tens);
        Arguments all = arguments;
        all.insert(all.begin(), "--json");
        left = batch(all, "(" + delay + "; kill -9 $$) >/dev/null 2>&1 &").out;
        for (const std::string& line : split(left))
            EXPECT_NE(std::find(lines.begin(), lines.end(), line), lines.end()) << line;
        EXPECT_TRUE(resume(arguments, left).out == once) << delay;
    }
}

TEST_F(Resume, BinariesThenThoseThatAreNotThereAreMadeAgain) {
    for (const std::string name : {"a.frag", "b.frag", "c.frag", "d.frag"})
        add_source(name, "BINARY");
    const std::string folder = "out/Vexa-K300_r5p0-06rel0/Vexa-K580/r0p0_00rel0/";
    Arguments arguments{"--core", "Vexa-K580", "--outputs", "out",
                        "a.frag", "b.frag",    "c.frag",    "d.frag"};
    const std::string once = ordered(arguments).out;
    std::filesystem::remove(path(folder + "b.frag.bin"));
    write_file(path(folder + "c.frag.bin"), "abc");
    take_requests();
    EXPECT_EQ(resume(arguments, once).out, once);
    EXPECT_EQ(compiled_count(), 2U);
    for (const std::string name : {"a.frag", "b.frag", "c.frag", "d.frag"})
        EXPECT_EQ(read_file(path(folder + name + ".bin")).size(), 4U);
    // Elsewhere there is none yet.
    arguments[3] = "other";
    EXPECT_EQ(resume(arguments, once).out, ordered(arguments).out);
    EXPECT_EQ(compiled_count(), 8U);
    EXPECT_EQ(read_file(path("other" + folder.substr(3) + "d.frag.bin")).size(), 4U);
}

TEST_F(Resume, ShardThenOnlyItsJobs) {
    const Arguments arguments = sources();
    const std::string all = ordered(arguments).out;
    Arguments second = arguments;
    second.insert(second.end(), {"--shard", "2/3"});
    const std::string once = ordered(second).out;
    const std::string part = once.substr(0, once.find("{\"job\":10,"));
    take_requests();
    EXPECT_EQ(resume(second, all).out, once);
    EXPECT_EQ(compiled_count(), 0U);
    EXPECT_EQ(resume(second, part).out, once);
    EXPECT_EQ(resume(arguments, once).out, all);
}

TEST_F(Resume, AnotherRunThenRefused) {
    add_source("a.frag");
    const std::string other = ordered({"a.frag", "-D", "A"}).out;
    const std::string refused = "vexacm: cannot resume 'done': it is of another run\n";
    expect(resume({"a.frag"}, other), 5, "", refused);
    expect(resume({"a.frag", "-D", "A", "--give-up-after", "2"}, other), 5, "", refused);
    EXPECT_EQ(resume({"a.frag", "-D", "A"}, other).out, other);
    add_source("a.frag", "another");
    expect(resume({"a.frag", "-D", "A"}, other), 5, "", refused);
}

TEST_F(Resume, FileThatIsNoneOfResultsThenRefused) {
    add_source("a.frag");
    expect(resume({"a.frag"}, "junk\n"), 5, "", "vexacm: done, line 1: no result of a batch\n");
    expect(batch({"a.frag", "--resume", "none"}), 5, "",
           "vexacm: cannot open none: No such file or directory\n");
    const std::string once = ordered({"a.frag"}).out;
    vexacm_tool::Result result = vexacm_tool::result_of_line(split(once)[1]);
    result.printed = "another";
    EXPECT_EQ(resume({"a.frag"}, once + once).out, once);
    expect(resume({"a.frag"}, once + to_line(result)), 5, "",
           "vexacm: two results for job 1, in 'done' and 'done'\n");
}

} // namespace
