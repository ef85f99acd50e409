// SPDX-License-Identifier: MIT
#include "plugin_text.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "grouping_locale.hpp"
#include "texts.hpp"

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs pairs_of(std::vector<const char*> entries, std::uint32_t count, bool null_list = false) {
    vexaoc_capabilities capabilities = {};
    capabilities.num_entries = count;
    if (!null_list)
        capabilities.entries = const_cast<char**>(entries.data());
    Pairs pairs;
    VexaCM::for_each_capability(
        capabilities, [&](const char* key, const char* value) { pairs.emplace_back(key, value); });
    return pairs;
}

TEST(PluginText, NullThenEmpty) {
    const char* const text = "text";
    EXPECT_EQ(VexaCM::text_or_empty(text), text);
    EXPECT_STREQ(VexaCM::text_or_empty(nullptr), "");
}

TEST(PluginText, ListIsNullThenNothingIsInIt) {
    const int list[] = {1};
    EXPECT_EQ(VexaCM::list_length(4294967295, list), 4294967295);
    EXPECT_EQ(VexaCM::list_length(0, list), 0U);
    EXPECT_EQ(VexaCM::list_length<int>(4294967295, nullptr), 0U);
}

TEST(PluginText, CapabilitiesThenPairByPairInOrder) {
    EXPECT_EQ(pairs_of({"k", "v", "k", "w", "", ""}, 6), (Pairs{{"k", "v"}, {"k", "w"}, {"", ""}}));
    EXPECT_EQ(pairs_of({"k", "v", "k", "w"}, 2), (Pairs{{"k", "v"}}));
    EXPECT_EQ(pairs_of({"k", "v"}, 0), Pairs());
}

TEST(PluginText, CapabilityWithoutAValueThenIgnored) {
    EXPECT_EQ(pairs_of({"k", "v", "last"}, 3), (Pairs{{"k", "v"}}));
    EXPECT_EQ(pairs_of({"last"}, 1), Pairs());
}

TEST(PluginText, CapabilityIsNullThenItReadsAsEmpty) {
    EXPECT_EQ(pairs_of({nullptr, "v", "k", nullptr, nullptr, nullptr}, 6),
              (Pairs{{"", "v"}, {"k", ""}, {"", ""}}));
    EXPECT_EQ(pairs_of({}, 4294967295, true), Pairs());
}

TEST(PluginText, NumberThenAsTheStandardLibraryConvertsIt) {
    const Grouping_locale grouping;
    Random_texts random;
    const Pieces pieces = {"0",    "5",     "-",     "+",          " ",          "\t", "x",
                           "9999", "21474", "83647", "2147483647", "2147483648", ",",  "\n"};
    Differences differences;
    for (int i = 0; i < 200000 / COUNT_CUT; ++i) {
        const std::string text = random.text(pieces, 6);
        std::string expected;
        std::string converted;
        const auto describe = [&](auto convert) -> std::string {
            try {
                return std::to_string(convert());
            } catch (const std::invalid_argument&) {
                return "no number";
            } catch (const std::out_of_range&) {
                return "out of range";
            }
        };
        expected = describe([&] { return std::stoi(text); });
        converted = describe([&] { return VexaCM::to_int(text.c_str()); });
        if (converted != expected)
            differences.add("\"" + text + "\": " + converted + ", not " + expected);
    }
    EXPECT_EQ(differences.found(), "");
}

TEST(PluginText, NoNumberThenTheExceptionNamesTheConversion) {
    for (const char* text : {"", "x", "-", "2147483648", "-2147483649", "99999999999999999999"})
        try {
            VexaCM::to_int(text);
            ADD_FAILURE() << text;
        } catch (const std::logic_error& error) {
            EXPECT_STREQ(error.what(), "stoi") << text;
        }
    EXPECT_EQ(VexaCM::to_int("2147483647"), 2147483647);
    EXPECT_EQ(VexaCM::to_int("-2147483648"), -2147483647 - 1);
}

TEST(PluginText, VersionThenAsTheStandardLibraryScansIt) {
    const Grouping_locale grouping;
    Random_texts random;
    const Pieces pieces = {"0",
                           "7",
                           "12",
                           ".",
                           ".",
                           ".",
                           "1.2.3",
                           "-",
                           "+",
                           " ",
                           "\n",
                           "x",
                           ",",
                           "4294967296",
                           "9223372036854775808",
                           "18446744073709551616"};
    Differences differences;
    const auto compare = [&](const std::string& text, const char* format, auto type, auto convert) {
        decltype(type) scanned[3] = {1, 2, 3};
        decltype(type) read[3] = {1, 2, 3};
        const int count = std::sscanf(text.c_str(), format, &scanned[0], &scanned[1], &scanned[2]);
        if (VexaCM::read_version(text.c_str(), read, convert) != std::max(count, 0) ||
            !std::equal(std::begin(read), std::end(read), scanned))
            differences.add("\"" + text + "\" " + format);
    };
    for (int i = 0; i < 200000 / COUNT_CUT; ++i) {
        const std::string text = random.text(pieces, 7);
        compare(text, "%u.%u.%u", std::uint32_t(), std::strtoul);
        compare(text, "%d.%d.%d", std::int32_t(), std::strtol);
    }
    EXPECT_EQ(differences.found(), "");
}

TEST(PluginText, EarlierErrorIsSetThenTheNumberIsStillRead) {
    errno = ERANGE;
    EXPECT_EQ(VexaCM::to_int("7"), 7);
}

} // namespace
