// SPDX-License-Identifier: MIT
// Sources as a plug-in has them in its folder, and sources of a mebibyte.
#include "plugin_test.hpp"
#include "spirv.hpp"

#include <gtest/gtest.h>

namespace {

class Clean_source : public testing::TestWithParam<std::string> {};

std::string test_name(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    name[name.find('.')] = '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Files, Clean_source, testing::ValuesIn(SUBJECT.clean_sources), test_name);

TEST_P(Clean_source, GivesSpirvAndNoMessages) {
    const Compiled compiled = compile_file(GetParam());
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    EXPECT_EQ(compiled.errors, Texts{});
    EXPECT_EQ(compiled.warnings, Texts{});
    const std::vector<std::uint32_t> words = words_of(compiled.binary);
    ASSERT_GT(words.size(), 5U);
    EXPECT_EQ(words[0], 0x07230203U);
    EXPECT_GE(words[1], 0x00010000U);
    EXPECT_LE(words[1], SUBJECT.newest_spirv);
}

TEST_P(Clean_source, GivesTheSameTheSecondTime) {
    const Open_plugin plugin;
    const Request request = request_for(GetParam());
    const Compiled first = compile(plugin, request);
    compile(plugin, Request("broken"));
    const Compiled second = compile(plugin, request);
    EXPECT_EQ(first.binary, second.binary);
    EXPECT_EQ(first.table, second.table);
}

#ifdef SPIRV_VAL
TEST_P(Clean_source, PassesTheValidator) {
    expect_valid(compile_file(GetParam()).binary, SUBJECT.target_environment);
}
#endif

TEST(Broken_source, GivesNoBinaryAndNoTable) {
    const Compiled compiled = compile(Request(with_body("x;")));
    EXPECT_EQ(compiled.errors, Texts{SUBJECT.undeclared("x", 1)});
    EXPECT_TRUE(compiled.binary.empty());
    EXPECT_TRUE(compiled.table.empty());
}

TEST(Long_source, MayHaveAMebibyte) {
    const std::string source = with_body("");
    EXPECT_EQ(errors_of(source + std::string(MEBIBYTE - source.size(), ' ')), Texts{});
    EXPECT_EQ(errors_of(source + std::string(MEBIBYTE - source.size() + 1, ' ')),
              Texts{SUBJECT.too_many_bytes});
}

class Mebibyte : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(Of, Mebibyte, testing::ValuesIn(SUBJECT.repeated));

// What the errors say does not matter here; that there is an end does.
TEST_P(Mebibyte, ComesToAnEnd) {
    const std::string text = repeat(GetParam(), (MEBIBYTE - 500) / GetParam().size());
    for (const auto& [before, after] : SUBJECT.frames)
        errors_of(before + text + after);
}

} // namespace
