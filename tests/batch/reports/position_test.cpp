// SPDX-License-Identifier: MIT
#include "reports/position.hpp"

#include <gtest/gtest.h>

#include <string>

using vexacm_tool::position_of;

namespace {

// "12:5", "12" or "".
std::string place(std::string_view diagnostic) {
    const auto position = position_of(diagnostic);
    if (!position)
        return "";
    const std::string line = std::to_string(position->line);
    return position->column ? line + ":" + std::to_string(*position->column) : line;
}

TEST(Position, Glslang) {
    EXPECT_EQ(place("ERROR: 0:12: 'x' : undeclared identifier"), "12");
    EXPECT_EQ(place("WARNING: 0:12: text"), "12");
    EXPECT_EQ(place("NOTE: 0:12: text"), "12");
    EXPECT_EQ(place("INTERNAL ERROR: 0:12: text"), "12");
    EXPECT_EQ(place("UNIMPLEMENTED: 0:12: text"), "12");
    EXPECT_EQ(place("ERROR: 0:12:7: 'x' : text"), "12:7");
    EXPECT_EQ(place("ERROR: 0:2147483647: text\nERROR: 0:3: text"), "2147483647");
}

TEST(Position, GlslangElsewhereThenNone) {
    EXPECT_EQ(place("ERROR: 1:12: in another source string"), "");
    EXPECT_EQ(place("ERROR: 00:12: text"), "");
    EXPECT_EQ(place("ERROR: 0:0: text"), "");
    EXPECT_EQ(place("ERROR: 0:-1: text"), "");
    EXPECT_EQ(place("ERROR: 0: 12: text"), "");
    EXPECT_EQ(place("ERROR: 0:12"), "");
    EXPECT_EQ(place("ERROR: 0:12:text"), "");
    EXPECT_EQ(place("ERROR: 0:2147483648: text"), "");
    EXPECT_EQ(place("ERROR: 0:99999999999: text"), "");
    EXPECT_EQ(place("error: 0:12: text"), "");
    EXPECT_EQ(place(" ERROR: 0:12: text"), "");
    EXPECT_EQ(place("ERROR: Linking: text"), "");
    EXPECT_EQ(place("text\nERROR: 0:12: text"), "");
}

TEST(Position, Clang) {
    EXPECT_EQ(place("12:5: error: text"), "12:5");
    EXPECT_EQ(place("12:5: fatal error: text"), "12:5");
    EXPECT_EQ(place("12:5: warning: text\n3:4: note: text"), "12:5");
    EXPECT_EQ(place("12:5: note: text"), "12:5");
    EXPECT_EQ(place("12:5: remark: text"), "12:5");
    EXPECT_EQ(place("kernel.cl:3:5: error: text"), "3:5");
    EXPECT_EQ(place("<stdin>:3:5: warning: text"), "3:5");
}

TEST(Position, ClangElsewhereThenNone) {
    EXPECT_EQ(place(""), "");
    EXPECT_EQ(place(":"), "");
    EXPECT_EQ(place("3"), "");
    EXPECT_EQ(place("3:5"), "");
    EXPECT_EQ(place("3:5: text"), "");
    EXPECT_EQ(place("3: error: text"), "");
    EXPECT_EQ(place("0:5: error: text"), "");
    EXPECT_EQ(place("3:0: error: text"), "");
    EXPECT_EQ(place("3:5:error: text"), "");
    EXPECT_EQ(place("3:5: errors: text"), "");
    EXPECT_EQ(place("3:5:7: error: text"), "");
    EXPECT_EQ(place("a:b:3:5: error: text"), "");
    EXPECT_EQ(place("error: no such kernel"), "");
    EXPECT_EQ(place("a.cl\n:3:5: error: text"), "");
}

} // namespace
