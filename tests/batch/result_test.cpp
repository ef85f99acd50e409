// SPDX-License-Identifier: MIT
#include "result.hpp"

#include <gtest/gtest.h>

namespace {

using namespace vexacm_tool;

const std::string LINE =
    R"({"job":1,"jobs":6,"source":"a.frag","stage":"fragment","defines":["A=1"],"kernels":["k"],)"
    R"("compiler":{"driver":"d","core":"c","revision":"r","api":"openglessl","version":310},)"
    R"("outcome":"compiled","detail":"","errors":["e"],"warnings":["w"],"tables":[["x","y"],[]],)"
    R"("binary_size":4,"output":"o","printed":"p\n"})"
    "\n";

TEST(ResultLine, EveryMemberThenBackAgain) {
    EXPECT_EQ(to_line(result_of_line(LINE)), LINE);
    const Result result = result_of_line(LINE);
    EXPECT_EQ(result.job, 1U);
    EXPECT_EQ(result.source, "a.frag");
    EXPECT_EQ(result.output, "o");
    EXPECT_EQ(result.tables, (std::vector<std::vector<std::string>>{{"x", "y"}, {}}));
}

TEST(ResultLine, NoOutputThenNoKey) {
    Result result = result_of_line(LINE);
    result.output.reset();
    EXPECT_EQ(to_line(result).find("output"), std::string::npos);
    EXPECT_EQ(result_of_line(to_line(result)).output, std::nullopt);
}

TEST(ResultLine, NameThatIsNoUtf8ThenItsBytesToo) {
    Result result = result_of_line(LINE);
    result.source = "a\xff"
                    "b";
    const std::string line = to_line(result);
    EXPECT_NE(line.find("\"source\":\"a\xEF\xBF\xBD"
                        "b\",\"source_bytes\":\"61ff62\""),
              std::string::npos)
        << line;
    EXPECT_EQ(result_of_line(line).source, "a\xff"
                                           "b");
}

TEST(ResultLine, OutcomesThenNamesOfTheirOwn) {
    for (int i = 0; i <= static_cast<int>(Outcome::not_run); ++i)
        EXPECT_EQ(outcome_named(name(static_cast<Outcome>(i))), static_cast<Outcome>(i));
    EXPECT_EQ(outcome_named("done"), std::nullopt);
}

TEST(ResultLine, NoLineThenThrown) {
    for (const std::string text : {"", "{}", "[]", R"({"outcome":"done"})"})
        EXPECT_ANY_THROW(result_of_line(text)) << text;
}

} // namespace
