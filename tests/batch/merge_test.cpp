// SPDX-License-Identifier: MIT
// What is joined, and what is refused.
#include "run_files.hpp"

#include "result.hpp"

#include <filesystem>
#include <random>

namespace {

using namespace vexacm_tool;

class Merge : public Run_files {
protected:
    Process_result merge(std::vector<std::string> arguments, std::string_view input = "",
                         std::string_view setup = "") const {
        arguments.insert(arguments.begin(), "merge");
        return vexacm(arguments, input, setup);
    }

    void expect_refused(const Arguments& files, const std::string& reason,
                        const char* at_file = __builtin_FILE(), int at = __builtin_LINE()) const {
        const auto result = merge(files);
        expect(result, 5, "", "vexacm: " + reason + "\n", at_file, at);
    }

    /// A line of a run with six jobs.
    static std::string made_up(std::size_t job, Outcome outcome = Outcome::compiled,
                               std::optional<Shard> shard = {}, std::size_t jobs = 6) {
        Result result;
        result.job = job;
        result.jobs = jobs;
        result.run = {"d", 3};
        result.shard = shard;
        result.source = "a.frag";
        result.outcome = outcome;
        return to_line(result);
    }
};

TEST_F(Merge, WholeRunsConcatenationsAndStandardInputThenTheSame) {
    const Everything once = one_run(sources());
    shard(1, 2, sources());
    shard(2, 2, sources());
    const std::string both = read_file(path("shard-1-of-2")) + read_file(path("shard-2-of-2"));
    EXPECT_TRUE(merged({file("all", once.lines)}) == once);
    EXPECT_TRUE(merged({file("both", both)}) == once);
    EXPECT_TRUE(merged({"all", "both", "shard-2-of-2", "all"}) == once);
    EXPECT_EQ(merge({"--json", "-"}, both).out, once.lines);
    EXPECT_EQ(merge({"--json", "shard-1-of-2", "-"}, read_file(path("shard-2-of-2"))).out,
              once.lines);
    // Only the last line may lack its newline.
    EXPECT_EQ(merge({"--json", "-"}, both.substr(0, both.size() - 1)).out, once.lines);
}

TEST_F(Merge, NothingThenFailed) {
    expect_refused({file("empty", ""), "empty"}, "there are no results to merge");
    expect_refused({"none"}, "cannot open none: No such file or directory");
    expect_refused({"."}, "cannot read .: Is a directory");
    expect_refused({"--html", "none/h", "empty"}, "cannot write none/h: there is no such folder");
    expect(merge({}), 2, "", usage_error("SHARD is required"));
    expect(merge({"-"}, "", "exec <&-"), 5, "",
           "vexacm: cannot read standard input: Bad file descriptor\n");
}

TEST_F(Merge, OutputFailsThenFailed) {
    file("all", ordered(sources()).out);
    for (const std::string option : {"--json", "--sarif=s"})
        expect(merge({option, "all"}, "", "exec >/dev/full"), 5, "",
               "vexacm: cannot write standard output: No space left on device\n");
    EXPECT_EQ(merge({"--json", "--junit", "/dev/full", "all"}).err,
              "vexacm: cannot write /dev/full: No space left on device\n");
}

TEST_F(Merge, ShardsAreMissingThenTheyAreNamedAndNothingIsWritten) {
    std::vector<std::string> files;
    for (int number = 1; number <= 8; ++number)
        files.push_back(shard(number, 8, sources()));
    expect_refused({files[0], files[1], files[3], files[6], "--html", "h", "--json"},
                   "shard 3 of 8 is missing\nvexacm: shards 5 to 6 of 8 are missing\n"
                   "vexacm: shard 8 of 8 is missing");
    EXPECT_FALSE(std::filesystem::exists(path("h")));
    // Of 21 jobs there is none for shards 22 and 23.
    expect_refused({shard(20, 23, sources())},
                   "shards 1 to 19 of 23 are missing\nvexacm: shard 21 of 23 is missing");
}

TEST_F(Merge, JobsAreMissingThenCountedShardByShard) {
    shard(1, 2, sources());
    const std::vector<std::string> other = split(read_file(path(shard(2, 2, sources()))));
    ASSERT_EQ(other.size(), 10U);
    std::string not_run;
    for (std::size_t i = 3; i < 10; ++i)
        not_run += to_line({result_of_line(other[i]), Outcome::not_run});
    file("interrupted", other[0] + other[1] + other[2] + not_run);
    expect_refused({"shard-1-of-2", file("not-run", not_run)}, "shard 2 of 2 is missing");
    const std::string lacks = "shard 2 of 2 lacks 7 of 10 jobs: complete it with --resume";
    expect_refused({"shard-1-of-2", "interrupted"}, lacks);
    expect_refused({"interrupted"}, "shard 1 of 2 is missing\nvexacm: " + lacks);
    expect_refused({file("cut", other[0] + other[1] + other[2] + other[3].substr(0, 100)),
                    "shard-1-of-2"}, lacks);
    // Shards of different numbers, or none, tell no shard.
    file("fourth", read_file(path(shard(1, 4, sources()))));
    expect_refused({"shard-1-of-2", "fourth"},
                   "results are missing of 10 of 21 jobs: complete them with --resume");
    EXPECT_EQ(merge({"shard-1-of-2", "shard-2-of-2", "fourth"}).status, 5);
    const std::string all = ordered(sources()).out;
    expect_refused({file("half", all.substr(0, all.find("{\"job\":9,")))},
                   "results are missing of 12 of 21 jobs: complete them with --resume");
}

TEST_F(Merge, DifferentRunsThenBothFilesAreNamed) {
    add_source("a.frag");
    add_source("b.frag");
    write_file(path("m"), R"({"sources": [{"source": "a.frag"}, {"source": "b.frag"}]})");
    const Arguments manifest{"--manifest", "m"};
    shard(1, 2, manifest);
    const auto refuse = [&](Arguments arguments) {
        const std::string other = shard(2, 2, arguments);
        expect_refused({"shard-1-of-2", other},
                       "results of different runs, in 'shard-1-of-2' and 'shard-2-of-2'");
    };
    write_file(path("m"), R"({"sources": [{"source": "b.frag"}, {"source": "a.frag"}]})");
    refuse(manifest);
    write_file(path("m"), R"({"sources": [{"source": "a.frag"}]})");
    refuse(manifest);
    refuse({"a.frag", "b.frag", "-D", "A"});
    refuse({"a.frag", "b.frag", "--core", "Vexa-K580"});
    refuse({"a.frag", "b.frag", "--give-up-after", "4"});
    add_source("b.frag", "another");
    refuse({"a.frag", "b.frag"});
    add_source("b.frag");
    expect_refused({"shard-1-of-2"}, "shard 2 of 2 is missing");
    EXPECT_EQ(merge({"shard-1-of-2", shard(2, 2, {"a.frag", "b.frag"})}).status, 0);
    const std::string plugin = plugins.path("openglessl", "libVexa-K300_r1p0-00rel0.so");
    write_file(plugin, read_file(plugin) + "x");
    refuse({"a.frag", "b.frag"});
}

TEST_F(Merge, TwoResultsForAJobThenRefusedUnlessOneSaysThatItWasNotRun) {
    std::string all;
    for (std::size_t job = 0; job < 6; ++job)
        all += made_up(job);
    file("all", all);
    EXPECT_EQ(merge({"--json", "all", "all"}).out, all);
    EXPECT_EQ(merge({"--json", "all", file("not", made_up(4, Outcome::not_run))}).out, all);
    EXPECT_EQ(merge({"--json", "not", "all"}).out, all);
    EXPECT_EQ(merge({"--json", file("up", made_up(4, Outcome::given_up)), "all", "not"}).out, all);
    expect_refused({"all", file("other", made_up(4, Outcome::errors))},
                   "two results for job 4, in 'all' and 'other'");
    expect_refused({file("both", all + made_up(2, Outcome::crashed))},
                   "two results for job 2, in 'both' and 'both'");
}

TEST_F(Merge, GivenUpWithoutTheReasonThenMissing) {
    std::string all = made_up(0, Outcome::crashed) + made_up(1, Outcome::crashed);
    for (std::size_t job = 2; job < 6; ++job)
        all += made_up(job, Outcome::given_up);
    expect_refused({file("all", all)},
                   "results are missing of 4 of 6 jobs: complete them with --resume");
}

TEST_F(Merge, WhateverTheOutcomesThenTheExitStatusOfOneRun) {
    const std::pair<Outcome, int> outcomes[] = {
        {Outcome::compiled, 0}, {Outcome::errors, 1},    {Outcome::refused, 4},
        {Outcome::crashed, 4},  {Outcome::timed_out, 4}, {Outcome::unreadable, 5}};
    for (const auto& [outcome, status] : outcomes) {
        const std::string all = made_up(0, Outcome::compiled, {}, 2) + made_up(1, outcome, {}, 2);
        EXPECT_EQ(merge({"--json", "-"}, all).status, status);
        EXPECT_EQ(merge({"-"}, all).status, status);
    }
}

TEST_F(Merge, NoResultsThenTheLineIsNamed) {
    const std::string good = made_up(0);
    const std::string bad[] = {"\n",
                               "{}\n",
                               "{\"job\":\n",
                               "hello",
                               std::string("\0", 1),
                               good.substr(0, 50) + std::string("\0", 1) + good.substr(51),
                               "\xff\n",
                               made_up(6),
                               made_up(SIZE_MAX),
                               made_up(0, Outcome::compiled, {}, 0),
                               made_up(1, Outcome::compiled, Shard{1, 2}),
                               made_up(1, Outcome::compiled, Shard{0, 2}),
                               made_up(1, Outcome::compiled, Shard{2, 0}),
                               made_up(1, Outcome::compiled, Shard{3, 2}),
                               std::string(1000000, '[') + "\n",
                               "{\"job\":" + std::string(1000000, '[') + "\n",
                               good.substr(0, good.size() - 2) + ",\"more\":1}\n"};
    for (const std::string& text : bad) {
        expect_refused({file("bad", text)}, "bad, line 1: no result of a batch");
        expect_refused({file("bad", good + good + text)}, "bad, line 3: no result of a batch");
    }
    expect(merge({"-"}, good + "\n"), 5, "",
           "vexacm: standard input, line 2: no result of a batch\n");
}

TEST_F(Merge, LastLineIsCutAnywhereThenItsJobIsMissing) {
    const std::string last = made_up(5);
    std::string all;
    for (std::size_t job = 0; job < 5; ++job)
        all += made_up(job);
    for (std::size_t size = 0; size < last.size() - 1; ++size)
        expect(merge({"-"}, all + last.substr(0, size)), 5, "",
               "vexacm: results are missing of 1 of 6 jobs: complete them with --resume\n");
    EXPECT_EQ(merge({"-", "--json"}, all + last.substr(0, last.size() - 1)).out, all + last);
}

TEST_F(Merge, GreatNumbersThenNoMemoryForThem) {
    const std::size_t jobs = std::size_t{1} << 60;
    const auto is_missing = [&](const std::string& text, const std::string& reason) {
        expect(merge({"-"}, text, "ulimit -v 1000000"), 5, "", "vexacm: " + reason + "\n");
    };
    std::string lines;
    for (std::size_t job = 0; job < 20; ++job)
        lines += made_up(jobs / 20 * job, Outcome::compiled, {}, jobs);
    is_missing(lines, "results are missing of 1152921504606846956 of 1152921504606846976 jobs: "
                      "complete them with --resume");
    is_missing(made_up(4294967279, Outcome::compiled, Shard{4294967280, 4294967295}, jobs),
               "shards 1 to 4294967279 of 4294967295 are missing\nvexacm: shard 4294967280 of "
               "4294967295 lacks 268435455 of 268435456 jobs: complete it with --resume\n"
               "vexacm: shards 4294967281 to 4294967295 of 4294967295 are missing");
}

TEST_F(Merge, LinesWithAnyByteChangedThenAnErrorOrWhatTheyHave) {
    const std::string all = ordered(sources()).out;
    for (unsigned int seed = 0; seed < 300; ++seed) {
        std::mt19937 dice(seed);
        std::string text = all;
        for (auto changes = 1 + dice() % 3; changes > 0; --changes) {
            const std::size_t at = dice() % text.size();
            switch (dice() % 4) {
            case 0: text[at] = static_cast<char>(dice()); break;
            case 1: text.erase(at, 1 + dice() % 40); break;
            case 2: text.insert(at, text.substr(dice() % text.size(), dice() % 40)); break;
            default: text[at] = "0123456789{}[]\",:-\n"[dice() % 19];
            }
        }
        const auto result = merge({"--json", "-"}, text);
        EXPECT_TRUE(result.status == 5 || result.status <= 4) << seed;
        if (result.status == 5 && result.out.empty())
            EXPECT_EQ(result.err.rfind("vexacm: ", 0), 0U) << seed << result.err;
        else
            EXPECT_EQ(split(result.out).size(), 21U) << seed;
    }
}

TEST_F(Merge, HundredThousandLinesThenMemoryThatDoesNotGrowWithTheirText) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "AddressSanitizer takes more addresses than any limit allows";
#endif
    constexpr std::size_t JOBS = 100000;
    std::string all;
    for (std::size_t job = 0; job < JOBS; ++job)
        all += made_up(job, job % 9 == 0 ? Outcome::errors : Outcome::compiled, {}, JOBS);
    ASSERT_GT(all.size(), 25000000U);
    const auto result = merge({"--json", "-"}, all, "ulimit -v 40000");
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(result.out == all);
    EXPECT_EQ(result.status, 1);
}

} // namespace
