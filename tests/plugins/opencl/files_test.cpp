// SPDX-License-Identifier: MIT
// No source can read a file of the machine.
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

class Include : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Of, Include,
                         testing::Values("\"/etc/passwd\"", "</etc/passwd>", "<stdio.h>",
                                         "\"../../../../etc/passwd\"", "\"/dev/stdin\"", "\"-\"",
                                         "\"/proc/self/environ\"", "\"file:///etc/passwd\"",
                                         "<opencl-c.h>", "\"/\"", "\".\""));

TEST_P(Include, FindsNothing) {
    const std::string name = GetParam();
    const std::string bare = name.substr(1, name.size() - 2);
    const Texts errors = {"1:10: fatal error: '" + bare + "' file not found"};
    EXPECT_EQ(errors_of("#include " + name + "\nkernel void k() {}"), errors);
    EXPECT_EQ(errors_of("#define NAME " + name + "\n#include NAME\nkernel void k() {}"),
              Texts{"2:10: fatal error: '" + bare + "' file not found"});
    EXPECT_EQ(
        compile(Request("#include NAME\nkernel void k() {}").with("define", "NAME=" + name)).errors,
        errors);
    EXPECT_EQ(errors_of("#import " + name + "\n"),
              Texts{"1:9: fatal error: '" + bare + "' file not found"});
}

TEST_P(Include, IsNotThere) {
    EXPECT_EQ(errors_of(std::string("#if __has_include(") + GetParam() +
                        ")\n#error there\n#endif\nkernel void k() {}"),
              Texts{});
}

TEST(Files, IncludeNextFindsNothing) {
    EXPECT_EQ(compile(Request("#include_next <stdio.h>\n")).errors,
              Texts{"1:15: fatal error: 'stdio.h' file not found"});
}

TEST(Files, PragmasReadNone) {
    EXPECT_EQ(errors_of("#pragma GCC dependency \"/etc/passwd\"\n"),
              Texts{"1:24: fatal error: '/etc/passwd' file not found"});
    EXPECT_EQ(errors_of("#pragma clang module load \"/etc/passwd\"\n"),
              Texts{"1:15: error: '#pragma clang module' is not supported"});
    EXPECT_EQ(errors_of("#pragma clang module import std\n"),
              Texts{"1:15: error: '#pragma clang module' is not supported"});
}

TEST(Files, LineDirectiveNamesNone) {
    EXPECT_EQ(errors_of("#line 7 \"/etc/passwd\"\nkernel void k() { x; }"),
              Texts{"7:19: error: use of undeclared identifier 'x'"});
    EXPECT_EQ(errors_of("# 7 \"/etc/passwd\" 1\nkernel void k() { x; }"),
              Texts{"7:19: error: use of undeclared identifier 'x'"});
}

TEST(Files, AssemblerReadsNone) {
    EXPECT_EQ(errors_of("__asm__(\".incbin \\\"/etc/passwd\\\"\");\n"),
              Texts{"1:1: error: GNU-style inline assembly is disabled"});
}

TEST(Files, EmbedIsUnknown) {
    EXPECT_EQ(errors_of("#embed \"/etc/passwd\"\n"),
              Texts{"1:2: error: invalid preprocessing directive"});
}

} // namespace
