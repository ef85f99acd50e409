// SPDX-License-Identifier: MIT
#include "result.hpp"

#include <gtest/gtest.h>

namespace {

using namespace vexacm_tool;

const std::string LINE =
    R"({"job":1,"jobs":6,"run":{"digest":"d1","give_up_after":3},"shard":{"number":2,"of":4},)"
    R"("source":"a.frag","stage":"fragment","defines":["A=1"],"kernels":["k"],)"
    R"("compiler":{"driver":"d","core":"c","revision":"r","api":"openglessl","version":310},)"
    R"("outcome":"compiled","detail":"","errors":["e"],"warnings":["w"],"tables":[["x","y"],[]],)"
    R"("binary_size":4,"output":"o","printed":"p\n"})"
    "\n";

TEST(ResultLine, EveryMemberThenBackAgain) {
    EXPECT_EQ(to_line(result_of_line(LINE)), LINE);
    const Result result = result_of_line(LINE);
    EXPECT_EQ(result.job, 1U);
    EXPECT_EQ(result.run.digest, "d1");
    EXPECT_EQ(result.run.give_up_after, 3U);
    ASSERT_TRUE(result.shard);
    EXPECT_EQ(result.shard->number, 2U);
    EXPECT_EQ(result.shard->of, 4U);
    EXPECT_EQ(result.source, "a.frag");
    EXPECT_EQ(result.output, "o");
    EXPECT_EQ(result.tables, (std::vector<std::vector<std::string>>{{"x", "y"}, {}}));
}

TEST(ResultLine, NoOutputOrShardThenNoKey) {
    Result result = result_of_line(LINE);
    result.output.reset();
    result.shard.reset();
    EXPECT_EQ(to_line(result).find("output"), std::string::npos);
    EXPECT_EQ(to_line(result).find("shard"), std::string::npos);
    EXPECT_EQ(result_of_line(to_line(result)).output, std::nullopt);
    EXPECT_FALSE(result_of_line(to_line(result)).shard);
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

/// The line with one piece of it replaced.
std::string with(const std::string& piece, const std::string& replacement) {
    std::string line = LINE;
    return line.replace(line.find(piece), piece.size(), replacement);
}

TEST(ResultLine, NoLineThenThrown) {
    for (const std::string text : {"", "{}", "[]", "1", "null", R"({"outcome":"done"})"})
        EXPECT_ANY_THROW(result_of_line(text)) << text;
    for (const std::string job :
         {"-1", "1.0", "1e2", "\"1\"", "null", "[1]", "18446744073709551616"})
        EXPECT_ANY_THROW(result_of_line(with("\"job\":1", "\"job\":" + job))) << job;
    const std::pair<std::string, std::string> pieces[] = {
        {"\"version\":310", "\"version\":4294967296"},
        {"\"compiled\"", "\"done\""},
        {"[\"A=1\"]", "[1]"},
        {"[\"A=1\"]", "\"A=1\""},
        {"[[\"x\",\"y\"],[]]", "[[\"x\",\"y\"],{}]"},
        {"\"detail\":\"\",", ""},
        {"\"detail\":\"\"", "\"detail\":\"\",\"more\":1"},
        {"\"of\":4", "\"of\":4,\"more\":1"},
        {"\"source\":\"a.frag\"", "\"source\":\"a.frag\",\"source_bytes\":\"6\""},
        {"\"source\":\"a.frag\"", "\"source\":\"a.frag\",\"source_bytes\":\"6g\""},
        {"a.frag", "a\xff.frag"}};
    for (const auto& [piece, replacement] : pieces)
        EXPECT_ANY_THROW(result_of_line(with(piece, replacement))) << replacement;
}

} // namespace
