// SPDX-License-Identifier: MIT
#include "reports/text.hpp"

#include <gtest/gtest.h>

#include <vector>

using namespace vexacm_tool;

namespace {

std::vector<char32_t> codes(std::string_view text) {
    std::vector<char32_t> codes;
    while (!text.empty()) {
        const Character character = first_character(text);
        codes.push_back(character.code);
        text.remove_prefix(character.length);
    }
    return codes;
}

using Codes = std::vector<char32_t>;

TEST(Text, CharactersOfEachLength) {
    EXPECT_EQ(codes("a\x7F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF"),
              (Codes{'a', 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0x10000, 0x10FFFF}));
}

TEST(Text, BytesThatAreNoCharacterThenEachReplaced) {
    const Codes one{REPLACEMENT};
    const Codes two{REPLACEMENT, REPLACEMENT};
    const Codes three{REPLACEMENT, REPLACEMENT, REPLACEMENT};
    const Codes four{REPLACEMENT, REPLACEMENT, REPLACEMENT, REPLACEMENT};
    EXPECT_EQ(codes("\x80"), one);
    EXPECT_EQ(codes("\xFF"), one);
    EXPECT_EQ(codes("\xC3"), one);
    EXPECT_EQ(codes("\xC1\xBF"), two);
    EXPECT_EQ(codes("\xE2\x80"), two);
    EXPECT_EQ(codes("\xE0\x9F\xBF"), three);
    EXPECT_EQ(codes("\xED\xA0\x80"), three);
    EXPECT_EQ(codes("\xF0\x8F\xBF\xBF"), four);
    EXPECT_EQ(codes("\xF4\x90\x80\x80"), four);
    EXPECT_EQ(codes("\xF5\x80\x80\x80"), four);
    EXPECT_EQ(codes("\xC3z"), (Codes{REPLACEMENT, 'z'}));
    EXPECT_EQ(codes(std::string_view("\u00E9").substr(0, 1)), one); // the rest lies behind the end
}

TEST(Text, TerminalLineThenNothingThatMovesOrReorders) {
    EXPECT_EQ(terminal_line("a\x1b[0m\tb\n\x7F\u0080\u009F\u00A0"), "a [0m b    \u00A0");
    for (const char* const odd : {"\u061C", "\u200E", "\u200F", "\u2028", "\u2029", "\u202A",
                                  "\u202E", "\u2066", "\u2069", "\xFF"})
        EXPECT_EQ(terminal_line(odd), "\uFFFD");
    EXPECT_EQ(terminal_line("\u2027\u202F\u2065\u206A\u200D"), "\u2027\u202F\u2065\u206A\u200D");
}

std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> lines;
    for_each_line(text, [&](std::string_view line) { lines.push_back(line); });
    return lines;
}

TEST(Text, LinesWithoutEmptyOnesAtTheEnd) {
    using Lines = std::vector<std::string_view>;
    EXPECT_EQ(lines(""), Lines{});
    EXPECT_EQ(lines("\r\n\n"), Lines{});
    EXPECT_EQ(lines("one"), Lines{"one"});
    EXPECT_EQ(lines("\none\n\ntwo\n\n"), (Lines{"", "one", "", "two"}));
}

} // namespace
