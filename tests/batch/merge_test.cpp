// SPDX-License-Identifier: MIT
// What is joined, and what is refused.
#include "merge_test.hpp"

#include <filesystem>

namespace {

using namespace vexacm_tool;

using Merge = Merge_test;

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
    expect_refused(
        {file("cut", other[0] + other[1] + other[2] + other[3].substr(0, 100)), "shard-1-of-2"},
        lacks);
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
    const std::pair<Outcome, int> outcomes[] = {{Outcome::compiled, 0},  {Outcome::errors, 1},
                                                {Outcome::refused, 4},   {Outcome::crashed, 4},
                                                {Outcome::timed_out, 4}, {Outcome::unreadable, 5}};
    for (const auto& [outcome, status] : outcomes) {
        const std::string all = made_up(0, Outcome::compiled, {}, 2) + made_up(1, outcome, {}, 2);
        EXPECT_EQ(merge({"--json", "-"}, all).status, status);
        EXPECT_EQ(merge({"-"}, all).status, status);
    }
}

} // namespace
