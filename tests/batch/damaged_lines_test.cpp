// SPDX-License-Identifier: MIT
// Files of lines that no run writes, or not to their end.
#include "merge_test.hpp"

#include <random>

namespace {

using namespace vexacm_tool;

using DamagedLines = Merge_test;

TEST_F(DamagedLines, NoResultsThenTheLineIsNamed) {
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

TEST_F(DamagedLines, LastLineIsCutAnywhereThenItsJobIsMissing) {
    const std::string last = made_up(5);
    std::string all;
    for (std::size_t job = 0; job < 5; ++job)
        all += made_up(job);
    for (std::size_t size = 0; size < last.size() - 1; size += 9)
        expect(merge({"-"}, all + last.substr(0, size)), 5, "",
               "vexacm: results are missing of 1 of 6 jobs: complete them with --resume\n");
    EXPECT_EQ(merge({"-", "--json"}, all + last.substr(0, last.size() - 1)).out, all + last);
}

TEST_F(DamagedLines, GreatNumbersThenNoMemoryForThem) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "AddressSanitizer takes more addresses than any limit allows";
#endif
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

TEST_F(DamagedLines, LinesWithAnyByteChangedThenAnErrorOrWhatTheyHave) {
    const std::string all = ordered(sources()).out;
    for (unsigned int seed = 0; seed < 60; ++seed) {
        std::mt19937 dice(seed);
        std::string text = all;
        for (auto changes = 1 + dice() % 3; changes > 0; --changes) {
            const std::size_t at = dice() % text.size();
            switch (dice() % 4) {
            case 0:
                text[at] = static_cast<char>(dice());
                break;
            case 1:
                text.erase(at, 1 + dice() % 40);
                break;
            case 2:
                text.insert(at, text.substr(dice() % text.size(), dice() % 40));
                break;
            default:
                text[at] = "0123456789{}[]\",:-\n"[dice() % 19];
            }
        }
        const auto result = merge({"--json", "-"}, text);
        EXPECT_LE(result.status, 5) << seed;
        if (result.status == 5 && result.out.empty())
            EXPECT_EQ(result.err.rfind("vexacm: ", 0), 0U) << seed << result.err;
        else
            EXPECT_EQ(split(result.out).size(), 21U) << seed;
    }
}

TEST_F(DamagedLines, HundredThousandLinesThenMemoryThatDoesNotGrowWithTheirText) {
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
