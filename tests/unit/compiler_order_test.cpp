// SPDX-License-Identifier: MIT
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "captured_stderr.hpp"
#include "compiler_kit.hpp"

namespace {

Compiler compiler_of(const std::string& core, const std::string& revision) {
    Compiler_arguments arguments;
    arguments.core_name = core;
    arguments.core_revision = revision;
    return arguments.make();
}

bool is_before(const Compiler& a, const Compiler& b) {
    bool before = false;
    const std::string err = stderr_of([&] { before = Compiler::before(a, b); });
    EXPECT_EQ(err, "");
    return before;
}

TEST(CompilerOrder, HighestCoreFirstThenHighestRevision) {
    // Descending; what stands in one row is equal.
    const std::vector<std::vector<std::pair<std::string, std::string>>> rows = {
        {{"Vexa-K999", "r0p0"}, {"Vexa-K9990", "r0p0"}, {"Vexa-999", "r0p0_00rel0"}},
        {{"k58x", "r9p9_99rel9"}, {"Vexa-K580", "r9p9_99dev9"}},
        {{"k58x", "r0p0_00rel0"}, {"Vexa-K580", "r0p0"}, {"Vexa-580", ""}},
        {{"Vexa-K461", "r0p0_00rel0"}},
        {{"k46x", "r9p9_999999"}},
        {{"k46x", "r2p0_00rel0"}},
        {{"k46x", "r1p9_99rel9"}},
        {{"k46x", "r1p1_06rel0"}},
        {{"k46x", "r1p1_05rel9"}, {"k46x", "r1p1_5dev9"}},
        {{"k46x", "r1p1_05rel1"}},
        {{"k46x", "r1p1_05rel0"}, {"Vexa-K460", "r1p1_05relx"}, {"k46x", "r1p1_05"}},
        {{"k46x", "r1p1_00rel1"}},
        {{"k46x", "r1p1_00rel0"}, {"k46x", "r1p1"}, {"k46x", "r1p1-05rel9"}},
        {{"k46x", "r1p0_00rel1"}},
        // One digit counts: revision 10 is revision 1 and no more.
        {{"k46x", "r1p0"}, {"k46x", "r10p9_99rel9"}, {"k46x", "r1"}},
        {{"k46x", "r0p1_00rel0"}},
        {{"k46x", "r0p0_999999"}},
        {{"k46x", "r0p0_00rel1"}},
        {{"k46x", "r0p0_00rel0"}, {"k46x", "r0p0"}, {"k46x", ""}, {"k46x", "unknown"}},
        {{"k42x", "r9p9_99rel9"}},
        {{"Vexa-100", "r9p9_99rel9"}},
        {{"Vexa-K7", "r0p0"}},
        // Untranslated short names have no number.
        {{"k99x", "r1p0"}, {"", "r1p0"}, {"Vexa-", "r1p0"}, {"Vexa-Kx99", "r1p0"}},
        {{"k99x", "r0p0"}, {"k98x", ""}, {"unknown", "r0p0_00rel0"}},
    };
    for (std::size_t row_a = 0; row_a < rows.size(); ++row_a)
        for (const auto& a : rows[row_a])
            for (std::size_t row_b = 0; row_b < rows.size(); ++row_b)
                for (const auto& b : rows[row_b])
                    EXPECT_EQ(
                        is_before(compiler_of(a.first, a.second), compiler_of(b.first, b.second)),
                        row_a <= row_b)
                        << a.first << " " << a.second << ", " << b.first << " " << b.second;
}

TEST(CompilerOrder, ShortNamesCountAsTheNamesThatCallersSee) {
    for (const char* core : {"k30x", "k32x", "k42x", "k46x", "k52x", "k53x", "k56x", "k58x"})
        EXPECT_EQ(Compiler::order_key(core, "r2p1_05rel3"),
                  Compiler::order_key(Compiler::get_core_display_name(core), "r2p1_05rel3"))
            << core;
}

TEST(CompilerOrder, EqualsComeBeforeEachOther) {
    const Compiler compiler = compiler_of("k46x", "r2p1_05rel3");
    const Compiler same = compiler_of("k46x", "r2p1_05rel3");
    EXPECT_TRUE(is_before(compiler, compiler));
    EXPECT_TRUE(is_before(compiler, same));
    EXPECT_TRUE(is_before(same, compiler));
}

TEST(CompilerOrder, NothingButCoreAndRevisionCounts) {
    const Compiler_arguments same;
    std::vector<Compiler_arguments> others(7);
    others[0].driver_name = "Vexa-K300_r9p9-09rel9";
    others[1].api_name = "opencl";
    others[2].api_versions = {100};
    others[3].library_version[0] = others[3].library_version[2] = 9;
    others[4].flexible_version[0] = others[4].flexible_version[2] = 9;
    others[5].extensions = "";
    others[6].binary_output = others[6].prerotate = true;
    for (const Compiler_arguments& other : others) {
        EXPECT_TRUE(is_before(same.make(), other.make()));
        EXPECT_TRUE(is_before(other.make(), same.make()));
    }
}

} // namespace
