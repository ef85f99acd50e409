// SPDX-License-Identifier: MIT
//
// What the documents show is what is in the tree.
#include <gtest/gtest.h>

#include "plugin_directory.hpp"

namespace {

TEST(Readme, ShowsTheListExample) {
    const std::string readme = read_file(SOURCE_DIRECTORY "/README.md");
    std::string example = read_file(SOURCE_DIRECTORY "/examples/list.c");
    example.erase(0, example.find("#include"));
    EXPECT_NE(readme.find("```c\n" + example + "```\n"), std::string::npos);
}

} // namespace
