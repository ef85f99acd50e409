// SPDX-License-Identifier: MIT
#include "reports/compiler_names.hpp"

#include <gtest/gtest.h>

using vexacm_tool::wrapped_list;

namespace {

const std::string FORTY(40, 'a');
const std::string THIRTY_FOUR(34, 'b');

TEST(WrappedList, UpToEightyColumnsThenOneLine) {
    EXPECT_EQ(wrapped_list("it: ", {FORTY, THIRTY_FOUR}, 2), // 4 + 40 + ", " + 34
              "it: " + FORTY + ", " + THIRTY_FOUR + "\n");
    EXPECT_EQ(wrapped_list("its: ", {FORTY, THIRTY_FOUR}, 2),
              "its: " + FORTY + ",\n  " + THIRTY_FOUR + "\n");
}

TEST(WrappedList, LongItemsThenEachOnALine) {
    const std::string item(90, 'c');
    EXPECT_EQ(wrapped_list("it: ", {item, item}, 4), "it: " + item + ",\n    " + item + "\n");
}

TEST(WrappedList, NoItemsThenTheStart) {
    EXPECT_EQ(wrapped_list("it:", {}, 4), "it:\n");
}

TEST(WrappedList, OddItemThenItCannotBreakTheLine) {
    EXPECT_EQ(wrapped_list("", {"a\nb\x1b"}, 0), "a b \n");
}

} // namespace
