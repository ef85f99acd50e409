// SPDX-License-Identifier: MIT
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "captured_stderr.hpp"
#include "core_text_model.hpp"
#include "grouping_locale.hpp"
#include "texts.hpp"
#include "vexacm_internal_compiler.hpp"

namespace {

using Compiler = VexaCM::Vexacm_internal_compiler;

// What a number holds that is left alone.
constexpr std::uint32_t UNTOUCHED = 4000000001;

std::uint32_t number_of(const std::string& name) {
    std::uint32_t number = UNTOUCHED;
    EXPECT_TRUE(Compiler::parse_core_name(name, &number));
    return number;
}

TEST(CoreName, DisplayNameThenItsNumber) {
    const struct {
        const char* name;
        std::uint32_t number;
    } cases[] = {
        {"Vexa-K300", 300}, {"Vexa-K320", 320}, {"Vexa-K420", 420}, {"Vexa-K460", 460},
        {"Vexa-K520", 520}, {"Vexa-K530", 530}, {"Vexa-K560", 560}, {"Vexa-K580", 580},
        {"Vexa-100", 100},  {"Vexa-0", 0},      {"Vexa-K7", 7},     {"Vexa-K007", 7},
    };
    for (const auto& expected : cases)
        EXPECT_EQ(number_of(expected.name), expected.number) << expected.name;
}

TEST(CoreName, OtherTextsThenReadByTheSameSteps) {
    const struct {
        const char* name;
        std::uint32_t number;
    } cases[] = {
        // Three characters behind the prefix, and not more.
        {"Vexa-K4600", 460},
        {"Vexa-1234", 123},
        {"Vexa-K46", 46},
        {"Vexa-K46x", 46},
        {"Vexa-K46\n0", 46},
        {"Vexa-K4\n60", 4},
        // No digit in front.
        {"Vexa-Kx60", 0},
        {"Vexa-k460", 0},
        {"Vexa-KK46", 0},
        {"Vexa--46", 0},
        {"Vexa-+46", 0},
        {"Vexa-K-46", 0},
        {"Vexa-K,46", 0},
        // White space goes first.
        {"Vexa-K 46", 46},
        {"Vexa-K\t\v4", 4},
        {"Vexa-K\f\r9", 9},
        {"Vexa- K4", 0},
        // Nothing to read.
        {"", UNTOUCHED},
        {"Vexa", UNTOUCHED},
        {"Vexa-", UNTOUCHED},
        {"Vexa-K", UNTOUCHED},
        {"Vexa-K   ", UNTOUCHED},
        {"Vexa-K\n460", UNTOUCHED},
        {"Vexa-\n460", UNTOUCHED},
        {"Vexa- \t\r460", UNTOUCHED},
        {"k46x", UNTOUCHED},
        {"12345", UNTOUCHED},
        {"-", UNTOUCHED},
        // The prefix ends at a hyphen or after five characters.
        {"-K460", 460},
        {"-460", 460},
        {"V-460", 460},
        {"12345678", 678},
        {"123456789", 678},
        {"VexaK460", 460},
        {"VexaXK460", 460},
        {"abcdeK-46", 0},
        {"Vexa K460", 460},
        {"Vexa--K46", 0},
    };
    for (const auto& expected : cases)
        EXPECT_EQ(number_of(expected.name), expected.number) << expected.name;
}

void check_all_names(std::size_t most) {
    Differences differences;
    const auto check = [&](const std::string& name) {
        if (number_of(name) != core_number_by_stream(name, UNTOUCHED))
            differences.add(name);
    };
    const std::string err = stderr_of([&] {
        // Long enough for the prefix, a "K", three digits and one more.
        for_each_text({"-", "K", "4"}, most + 4, check);
        for_each_text({"-", "K", "k", "0", "7", " ", "\n", "+"}, most, check);
        for_each_text({"K", "0", "6", "x", " ", "\t", "\n", "-"}, most, check, "Vexa-");
        Random_texts random;
        const Pieces pieces = {"Vexa-", "Vexa", "K", "-", "4", "60", " ",    "\t", "\n",
                               "\r",    "x",    "k", "+", "0", "9",  "\x80", ",",  "\xff"};
        for (int i = 0; i < 200000 / COUNT_CUT; ++i)
            check(random.text(pieces, 8));
    });
    EXPECT_EQ(differences.found(), "");
    EXPECT_EQ(err, "");
}

TEST(CoreName, AnyTextThenAsAStreamReadsIt) {
    check_all_names(6 - LENGTH_CUT);
}

TEST(CoreName, LocaleThatGroupsDigitsThenTheSame) {
    const Grouping_locale grouping;
    check_all_names(4);
}

} // namespace
