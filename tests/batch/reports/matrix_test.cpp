// SPDX-License-Identifier: MIT
#include "report_test.hpp"
#include "reports/matrix.hpp"

using vexacm_tool::Matrix;

namespace {

using Groups = std::vector<std::vector<std::size_t>>;

Matrix matrix_of(const Made_results& results) {
    Matrix matrix;
    results.for_each([&](const Result& result) { matrix.add(result, result.detail); });
    return matrix;
}

TEST(Matrix, NothingAddedThenEmpty) {
    const Matrix matrix;
    EXPECT_TRUE(matrix.rows().empty());
    EXPECT_EQ(matrix.equal_compilers(), Groups{});
}

TEST(Matrix, EqualInEveryRowThenTogether) {
    Made_results results;
    for (const char* const source : {"a.frag", "b.frag", "c.frag"})
        for (const auto& compiler : {K580, K460, K420})
            results.add(source, compiler);
    EXPECT_EQ(matrix_of(results).equal_compilers(), (Groups{{0, 1, 2}}));
}

// The second row takes K460 away, the third would put it back.
TEST(Matrix, DifferentInOneRowThenApart) {
    Made_results results;
    for (const char* const source : {"a.frag", "b.frag", "c.frag"})
        for (const auto& compiler : {K580, K460, K420})
            results.add(source, compiler);
    Made_results different;
    results.for_each([&](const Result& result) {
        const bool apart = result.source == "b.frag" && result.compiler.core == K460.core;
        different.add(result.source, result.compiler, apart ? Outcome::refused : Outcome::compiled);
    });
    EXPECT_EQ(matrix_of(different).equal_compilers(), (Groups{{0, 2}, {1}}));
}

// In one row K580 and K460 are alike, in the other K460 and K420: no two are in both.
TEST(Matrix, AlikeWithOthersInEachRowThenApart) {
    Made_results results;
    results.add("a.frag", K580);
    results.add("a.frag", K460);
    results.add("a.frag", K420, Outcome::refused);
    results.add("b.frag", K580, Outcome::refused);
    results.add("b.frag", K460);
    results.add("b.frag", K420);
    EXPECT_EQ(matrix_of(results).equal_compilers(), (Groups{{0}, {1}, {2}}));
}

TEST(Matrix, CompilersOfDifferentSourcesThenNoJobCountsAsDifferent) {
    Made_results results;
    results.add("a.frag", K580);
    results.add("a.cl", K580_CL);
    const Matrix matrix = matrix_of(results);
    EXPECT_EQ(matrix.equal_compilers(), (Groups{{0}, {1}}));
    EXPECT_EQ(Matrix::cell(matrix.rows()[0], 1), Matrix::NO_JOB);
    EXPECT_EQ(Matrix::cell(matrix.rows()[1], 0), Matrix::NO_JOB);
}

TEST(Matrix, SameContentThenKeptOnce) {
    Made_results results;
    results.add("a.frag", K580, Outcome::refused).detail = "same";
    results.add("a.frag", K460, Outcome::refused).detail = "same";
    results.add("a.frag", K420, Outcome::refused).detail = "other";
    results.add("b.frag", K420, Outcome::exited).detail = "same";
    const Matrix matrix = matrix_of(results);
    EXPECT_EQ(matrix.rows()[0].cells, (std::vector<std::uint32_t>{0, 0, 1}));
    EXPECT_EQ(Matrix::cell(matrix.rows()[1], 2), 2U);
    ASSERT_EQ(matrix.contents().size(), 3U);
    EXPECT_EQ(matrix.content(1), Matrix::Content(Outcome::refused, "other"));
    EXPECT_EQ(matrix.content(2), Matrix::Content(Outcome::exited, "same"));
}

// Each differs from the row before in one thing.
TEST(Matrix, CompiledInAnotherWayThenAnotherRow) {
    Made_results results;
    results.add("a.frag", K580);
    results.add("a.frag", K460).stage = "vertex";
    Result& defined = results.add("a.frag", K420);
    defined.stage = "vertex";
    defined.defines = {"A"};
    Result& kernel = results.add("a.frag", K580_CL);
    kernel.stage = "vertex";
    kernel.defines = {"A"};
    kernel.kernels = {"k"};
    const Matrix matrix = matrix_of(results);
    ASSERT_EQ(matrix.rows().size(), 4U);
    EXPECT_EQ(title(matrix.rows()[3]), "a.frag -D A --kernel k");
}

TEST(Matrix, CompilersThatDifferInOneThingThenAllKept) {
    Compiler_name older = K580;
    older.version = 310;
    Compiler_name shifted = K580;
    shifted.driver += "V";
    shifted.core.erase(0, 1);
    Made_results results;
    for (const auto& compiler : {K580, K580_CL, older, shifted})
        results.add("a.frag", compiler);
    EXPECT_EQ(matrix_of(results).compilers().size(), 4U);
    EXPECT_EQ(matrix_of(results).rows().size(), 1U);
}

} // namespace
