// SPDX-License-Identifier: MIT
#include "report_test.hpp"
#include "reports/summary.hpp"

using vexacm_tool::write_summary;

namespace {

TEST(Summary, SomeOfEverything) {
    expect_golden("everything.txt", written(write_summary, some_of_everything()));
}

TEST(Summary, NoJobs) {
    EXPECT_EQ(written(write_summary, {}), "no jobs\n");
}

TEST(Summary, OneJob) {
    Made_results results;
    results.add("a.frag", K580);
    EXPECT_EQ(written(write_summary, results),
              "A Vexa-K300_r5p0-06rel0 openglessl: Vexa-K580 r0p0_00rel0\n"
              "\n"
              "A source\n"
              ". a.frag\n"
              "\n"
              ". compiled\n"
              "\n"
              "1 job: 1 compiled\n");
}

TEST(Summary, ListedTwiceThenTwoRows) {
    Made_results results;
    for (int i = 0; i < 2; ++i)
        for (const auto& compiler : {K580, K420})
            results.add("a.frag", compiler, Outcome::refused);
    EXPECT_EQ(written(write_summary, results), "a.frag\n"
                                               "  refused\n"
                                               "    with all 2 compilers\n"
                                               "\n"
                                               "a.frag\n"
                                               "  refused\n"
                                               "    with all 2 compilers\n"
                                               "\n"
                                               "A all 2 compilers\n"
                                               "\n"
                                               "A source\n"
                                               "R a.frag\n"
                                               "R a.frag\n"
                                               "\n"
                                               "R refused\n"
                                               "\n"
                                               "4 jobs: 4 refused\n");
}

TEST(Summary, SameTextWithOtherOutcomeThenNotFolded) {
    Made_results results;
    results.add("a.frag", K580, Outcome::exited).detail = "exit status 1";
    results.add("a.frag", K460, Outcome::exited).detail = "exit status 2";
    results.add("a.frag", K420, Outcome::refused);
    EXPECT_EQ(written(write_summary, results),
              "a.frag\n"
              "  exited: exit status 1\n"
              "    with Vexa-K300_r5p0-06rel0 openglessl: Vexa-K580 r0p0_00rel0\n"
              "  exited: exit status 2\n"
              "    with Vexa-K300_r5p0-06rel0 openglessl: Vexa-K460 r0p1_00rel0\n"
              "  refused\n"
              "    with Vexa-K300_r1p0-00rel0 openglessl: Vexa-K420 r2p0_02rel1\n"
              "\n"
              "A Vexa-K300_r5p0-06rel0 openglessl: all 2\n"
              "B Vexa-K300_r1p0-00rel0 openglessl: Vexa-K420 r2p0_02rel1\n"
              "\n"
              "A B source\n"
              "X R a.frag\n"
              "\n"
              "R refused, X exited\n"
              "\n"
              "3 jobs: 1 refused, 2 exited\n");
}

// Twenty-eight drivers with four cores each.
Made_results many_compilers() {
    Made_results results;
    for (unsigned int source = 0; source < 28; ++source)
        for (unsigned int driver = 0; driver < 28; ++driver)
            for (unsigned int core = 0; core < 4; ++core)
                results.add("s" + std::to_string(source) + ".frag",
                            {"Vexa-K300_r" + std::to_string(driver) + "p0-00rel0",
                             "Vexa-K" + std::to_string(400 + core), "r0p0_00rel0", "openglessl",
                             320},
                            source == driver && core > 0 ? Outcome::refused : Outcome::compiled);
    return results;
}

TEST(Summary, ManyCompilersThenNamesFoldAndWrap) {
    expect_golden("many_compilers.txt", written(write_summary, many_compilers()));
}

} // namespace
