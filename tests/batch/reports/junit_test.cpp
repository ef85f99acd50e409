// SPDX-License-Identifier: MIT
#include "report_test.hpp"
#include "reports/junit.hpp"

using vexacm_tool::write_junit;

namespace {

TEST(JUnit, SomeOfEverything) {
    expect_golden("everything.junit.xml", written(write_junit, some_of_everything()));
}

TEST(JUnit, NoJobs) {
    EXPECT_EQ(written(write_junit, {}),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<testsuites name=\"vexacm\" tests=\"0\" failures=\"0\" errors=\"0\" skipped=\"0\">\n"
              "</testsuites>\n");
}

// The texts of the only case.
std::string case_with(const std::string& error, const std::string& printed) {
    Made_results results;
    Result& result = results.add("a.frag", K580, Outcome::errors);
    result.errors = {error};
    result.printed = printed;
    const std::string xml = written(write_junit, results);
    const std::size_t start = xml.find("      <failure");
    return xml.substr(start, xml.find("    </testcase>") - start);
}

TEST(JUnit, TextThenEscapedAndLegal) {
    EXPECT_EQ(case_with("a\t\"<&>'\r\n]]>\n\n", "\n\nb\n\nc\x01\xff\uFFFE\uFFFF\uFFFD\n"),
              "      <failure type=\"errors\" message=\"a&#9;&#34;&#60;&#38;&#62;'&#13;\">"
              "a&#9;&#34;&#60;&#38;&#62;'&#13;\n"
              "]]&#62;</failure>\n"
              "      <system-out>\n"
              "\n"
              "b\n"
              "\n"
              "c\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD</system-out>\n");
}

TEST(JUnit, NoTextThenNoElementForIt) {
    EXPECT_EQ(case_with("", "\n"), "      <failure type=\"errors\" message=\"errors\"/>\n");
}

} // namespace
