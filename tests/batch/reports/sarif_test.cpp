// SPDX-License-Identifier: MIT
#include "report_test.hpp"
#include "reports/sarif.hpp"

#include <nlohmann/json.hpp>

using vexacm_tool::write_sarif;

namespace {

nlohmann::json run_of(const Made_results& results) {
    return nlohmann::json::parse(written(write_sarif, results))["runs"][0];
}

TEST(Sarif, SomeOfEverything) {
    expect_golden("everything.sarif", written(write_sarif, some_of_everything()));
}

TEST(Sarif, NoJobsThenNoResults) {
    expect_golden("no_jobs.sarif", written(write_sarif, {}));
}

TEST(Sarif, CompiledThenNoResults) {
    Made_results results;
    results.add("a.frag", K580);
    EXPECT_EQ(written(write_sarif, results), written(write_sarif, {}));
}

TEST(Sarif, OnlyWhatTheToolDidNotDoIsNoSuccess) {
    for (std::size_t i = 0; i <= static_cast<std::size_t>(Outcome::not_run); ++i) {
        const auto outcome = static_cast<Outcome>(i);
        Made_results results;
        results.add("a.frag", K580, outcome);
        EXPECT_EQ(run_of(results)["invocations"][0]["executionSuccessful"],
                  outcome == Outcome::compiled || outcome == Outcome::errors)
            << name(outcome);
    }
}

TEST(Sarif, RuleOfEachOutcomeHasItsName) {
    for (std::size_t i = 1; i <= static_cast<std::size_t>(Outcome::not_run); ++i) {
        const auto outcome = static_cast<Outcome>(i);
        Made_results results;
        results.add("a.frag", K580, outcome);
        const nlohmann::json run = run_of(results);
        EXPECT_EQ(run["results"].size(), 1U);
        EXPECT_EQ(run["results"][0]["ruleId"], name(outcome));
        EXPECT_EQ(run["tool"]["driver"]["rules"][i]["id"], name(outcome));
    }
}

std::string uri_of(const std::string& source) {
    Made_results results;
    results.add(source, K580, Outcome::refused);
    return run_of(
        results)["results"][0]["locations"][0]["physicalLocation"]["artifactLocation"]["uri"];
}

TEST(Sarif, AnyNameThenAUri) {
    EXPECT_EQ(uri_of("a/b-c_d.e~f.frag"), "a/b-c_d.e~f.frag");
    EXPECT_EQ(uri_of("../a.frag"), "../a.frag");
    EXPECT_EQ(uri_of("/a b/c.frag"), "file:///a%20b/c.frag");
    EXPECT_EQ(uri_of("c:d"), "c%3Ad");
    EXPECT_EQ(uri_of("%41?#[]@!$&'()*+,;=\\\"<>^`{|}"),
              "%2541%3F%23%5B%5D%40%21%24%26%27%28%29%2A%2B%2C%3B%3D%5C%22%3C%3E%5E%60%7B%7C%7D");
    EXPECT_EQ(uri_of("\x01\n\x7F\x80\xFF\u00E9"), "%01%0A%7F%80%FF%C3%A9");
}

std::string message_of(const std::string& error) {
    Made_results results;
    results.add("a.frag", K580, Outcome::errors).errors = {error};
    return run_of(results)["results"][0]["message"]["text"];
}

TEST(Sarif, MessageThenNoPlaceholderAndNoEnd) {
    EXPECT_EQ(message_of("expected '}' after {0}\r\nnote\n\n"),
              "expected '}}' after {{0}}\r\nnote");
    EXPECT_EQ(message_of("\xff"), "\uFFFD");
    EXPECT_EQ(message_of("\n"), "(no text)");
}

TEST(Sarif, SaidTwiceByACompilerThenToldOnce) {
    Made_results results;
    for (const auto& compiler : {K580, K460})
        results.add("a.frag", compiler, Outcome::errors).errors = {"same", "same"};
    const nlohmann::json found = run_of(results)["results"];
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]["properties"]["compilers"],
              (nlohmann::json{"Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0 openglessl",
                              "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p1_00rel0 openglessl"}));
}

TEST(Sarif, SameTextAsErrorAndWarningThenTwoResults) {
    Made_results results;
    Result& result = results.add("a.frag", K580, Outcome::errors);
    result.errors = {"same"};
    result.warnings = {"same"};
    const nlohmann::json found = run_of(results)["results"];
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]["level"], "error");
    EXPECT_EQ(found[1]["level"], "warning");
}

} // namespace
