// SPDX-License-Identifier: MIT
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "captured_stderr.hpp"
#include "core_text_model.hpp"
#include "grouping_locale.hpp"
#include "texts.hpp"
#include "vexacm_internal_compiler.hpp"

namespace {

using Compiler = VexaCM::Vexacm_internal_compiler;
using Numbers = std::array<std::uint32_t, 4>;

// What numbers hold that are left alone.
constexpr std::uint32_t NONE = 4000000001;
constexpr Numbers UNTOUCHED = {NONE, NONE + 1, NONE + 2, NONE + 3};

Numbers numbers_of(const std::string& revision) {
    Numbers numbers = UNTOUCHED;
    EXPECT_TRUE(Compiler::parse_core_revision(revision, numbers.data()));
    return numbers;
}

struct Case {
    const char* revision;
    Numbers numbers; // NONE: left alone
};

void check(const std::vector<Case>& cases) {
    for (const Case& expected : cases) {
        Numbers numbers = expected.numbers;
        for (std::size_t i = 0; i < numbers.size(); ++i)
            if (numbers[i] == NONE)
                numbers[i] = UNTOUCHED[i];
        EXPECT_EQ(numbers_of(expected.revision), numbers) << expected.revision;
    }
}

TEST(CoreRevision, CompleteThenFourNumbers) {
    check({
        {"r2p1_05rel3", {2, 1, 5, 3}},
        {"r0p0_00dev1", {0, 0, 0, 1}},
        {"r0p0_00rel0", {0, 0, 0, 0}},
        {"r5p0_01rel2", {5, 0, 1, 2}},
        {"r5p0_01dev2", {5, 0, 1, 2}},
        {"r9p9_99rel9", {9, 9, 99, 9}},
        {"r1p2_3rel4", {1, 2, 3, 4}},
        {"r1p2_rel4", {1, 2, NONE, 4}},
    });
}

TEST(CoreRevision, BuildAndReleaseAreMissingThenLeftAlone) {
    check({
        {"r5p0", {5, 0, NONE, NONE}},
        {"r1p0", {1, 0, NONE, NONE}},
        {"r5p", {5, NONE, NONE, NONE}},
        {"r5", {5, NONE, NONE, NONE}},
        {"r", {NONE, NONE, NONE, NONE}},
        {"", {NONE, NONE, NONE, NONE}},
        {"r5p0_", {5, 0, NONE, NONE}},
        {"r5p0_\n5rel3", {5, 0, NONE, NONE}},
    });
}

TEST(CoreRevision, TakesOneDigitOfMajorAndMinor) {
    check({
        {"r10p2", {1, NONE, NONE, NONE}},
        {"r10p2_05rel3", {1, NONE, NONE, NONE}},
        {"r1p20_05rel3", {1, 2, NONE, NONE}},
        {"r10", {1, NONE, NONE, NONE}},
        {"r1p20", {1, 2, NONE, NONE}},
        // Another character in the place of the "p" or the underscore.
        {"r0p1-00rel0", {0, 1, NONE, NONE}},
        {"r0p1 00rel0", {0, 1, NONE, NONE}},
        {"r0P1_00rel0", {0, NONE, NONE, NONE}},
        {"r0r1_00rel0", {0, NONE, NONE, NONE}},
    });
}

TEST(CoreRevision, NumbersAreMissingThenTheOthersAreRead) {
    check({
        {"rp1_05rel3", {NONE, 1, 5, 3}},
        {"r1p_05rel3", {1, NONE, 5, 3}},
        {"rp_05rel3", {NONE, NONE, 5, 3}},
        {"r p _05rel3", {NONE, NONE, 5, 3}},
        {"r\np\n_05rel3", {NONE, NONE, 5, 3}},
        {"rxpy_05rel3", {0, 0, 5, 3}},
        {"r+p-_05rel3", {0, 0, 5, 3}},
        {"r_p_", {0, NONE, NONE, NONE}},
        {"r1pp_05rel3", {1, 0, 5, 3}},
    });
}

TEST(CoreRevision, BeginningThenSkippedUpToTheRButTwoCharactersAtMost) {
    check({
        {"r2p1_05rel3", {2, 1, 5, 3}},
        {"xr2p1_05rel3", {2, 1, 5, 3}},
        {"xx2p1_05rel3", {2, 1, 5, 3}},
        {"xxr2p1_05rel3", {0, NONE, NONE, NONE}},
        {"rr2p1_05rel3", {0, NONE, NONE, NONE}},
        {"R2p1_05rel3", {NONE, 1, 5, 3}},
        {"2p1_05rel3", {1, NONE, NONE, NONE}},
        {" r2p1_05rel3", {2, 1, 5, 3}},
        {"x", {NONE, NONE, NONE, NONE}},
        {"xx", {NONE, NONE, NONE, NONE}},
        {"xx7", {7, NONE, NONE, NONE}},
    });
}

TEST(CoreRevision, BuildEndsBeforeTheFirstDOrR) {
    check({
        {"r1p2_12d34", {1, 2, 12, 1}},
        {"r1p2_12r3l4", {1, 2, 12, 4}},
        {"r1p2_1rdl5", {1, 2, 1, 5}},
        {"r1p2_drl5", {1, 2, NONE, 5}},
        // Others end it as well, as no digits.
        {"r1p2_12x34", {1, 2, 12, 1}},
        {"r1p2_x12rel", {1, 2, 0, NONE}},
        {"r1p2_ 12l3", {1, 2, 12, 3}},
        {"r1p2_+12l3", {1, 2, 0, 3}},
        {"r1p2_-12l3", {1, 2, 0, 3}},
        {"r1p2_  rel3", {1, 2, NONE, 3}},
        {"r1p2_ rel3", {1, 2, NONE, 3}},
    });
}

TEST(CoreRevision, SixCharactersBehindTheUnderscoreCount) {
    check({
        {"r5p0_012345rel2", {5, 0, 12345, 0}},
        {"r5p0_9999999rel2", {5, 0, 999999, 9}},
        {"r5p0_123rel4", {5, 0, 123, NONE}},
        {"r5p0_12rel45", {5, 0, 12, 4}},
        {"r5p0_12\nrel4", {5, 0, 12, 1}},
        {"r5p0_1rel\n4", {5, 0, 1, NONE}},
    });
}

TEST(CoreRevision, ReleaseIsTheCharacterBehindTheFirstVOrL) {
    check({
        {"r1p2_5l34", {1, 2, 5, 3}},
        {"r1p2_5v34", {1, 2, 5, 3}},
        {"r1p2_5vl3", {1, 2, 5, 0}},
        {"r1p2_5relx", {1, 2, 5, 0}},
        {"r1p2_5rel ", {1, 2, 5, NONE}},
        {"r1p2_5rel-", {1, 2, 5, 0}},
        {"r1p2_l3", {1, 2, 0, 3}},
        {"r1p2_v", {1, 2, 0, NONE}},
    });
}

TEST(CoreRevision, ReadsTheReleaseWithoutATagFromTheStart) {
    check({
        {"r1p2_7", {1, 2, 7, 7}},
        {"r1p2_76", {1, 2, 76, 7}},
        {"r1p2_05", {1, 2, 5, 0}},
        {"r1p2_x", {1, 2, 0, 0}},
        {"r1p2_ 7", {1, 2, 7, NONE}},
        {"r1p2_5re", {1, 2, 5, 5}},
        {"r1p2_d", {1, 2, NONE, 0}},
    });
}

void check_all_revisions(std::size_t most) {
    Differences differences;
    const auto check_one = [&](const std::string& revision) {
        if (numbers_of(revision) != revision_by_stream(revision, UNTOUCHED))
            differences.add(revision);
    };
    const std::string err = stderr_of([&] {
        for_each_text({"r", "p", "_", "l", "1", "2", " ", "-"}, most, check_one);
        for_each_text({"r", "p", "_", "1", "\n"}, most + 1, check_one);
        for_each_text({"d", "r", "v", "l", "1", "2", " ", "\n"}, most, check_one, "r2p1_");
        for_each_text({"d", "l", "9"}, most + 2, check_one, "rp_");
        Random_texts random;
        const Pieces pieces = {"r", "p", "_", "-",   "d",   "l",    "v",  "0",  "1",
                               "9", " ", "x", "rel", "dev", "r1p2", "_0", "\n", "+"};
        for (int i = 0; i < 200000 / COUNT_CUT; ++i)
            check_one(random.text(pieces, 12));
    });
    EXPECT_EQ(differences.found(), "");
    EXPECT_EQ(err, "");
}

TEST(CoreRevision, AnyTextThenAsAStreamReadsIt) {
    check_all_revisions(6 - LENGTH_CUT);
}

TEST(CoreRevision, LocaleThatGroupsDigitsThenTheSame) {
    const Grouping_locale grouping;
    check_all_revisions(4);
}

} // namespace
