// SPDX-License-Identifier: MIT
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "grouping_locale.hpp"
#include "loaded_library.hpp"
#include "standard_stoi.hpp"
#include "texts.hpp"

namespace {

using Parsed = Library::ParsedDriverName;
using Fields = std::array<std::int32_t, 5>;

Fields fields_of(const Parsed& name) {
    return {name.core_id, name.revision, name.patch, name.version, name.release};
}

const std::string WRONG_PREFIX = "Name does not begin with \"Vexa-\"";
const std::string NO_REVISION = "Could not find revision delimiter \"_r\"";
const std::string UNKNOWN_CORE = "Unknown core name";
const std::string NO_PATCH = "Could not find patch delimiter \"p\"";
const std::string NO_VERSION = "Could not find version delimiter \"-\"";
const std::string NO_RELEASE = "Could not find release delimiter \"rel\"";
const std::string NO_NUMBER = "stoi";

struct Case {
    std::string name;
    Fields fields;
    std::string error; // none: the name parses
};

void check(const std::vector<Case>& cases) {
    for (const Case& expected : cases) {
        SCOPED_TRACE("\"" + expected.name + "\"");
        Fields fields = {};
        const std::string err = stderr_of([&] { fields = fields_of(Parsed(expected.name)); });
        EXPECT_EQ(fields, expected.fields);
        EXPECT_EQ(err,
                  expected.error.empty() ? "" : driver_name_error(expected.name, expected.error));
    }
}

TEST(DriverName, WithoutTextThenNothingIsKnown) {
    const std::string err = stderr_of([] {
        EXPECT_EQ(fields_of(Parsed()), (Fields{-1, -1, -1, -1, -1}));
    });
    EXPECT_EQ(err, "");
}

TEST(DriverName, CompleteThenFiveNumbersInSilence) {
    check({
        {"Vexa-K300_r5p0-06rel0", {1, 5, 0, 6, 0}, ""},
        {"Vexa-200_r4p1-01rel2", {0, 4, 1, 1, 2}, ""},
        {"Vexa-K300_r0p0-00rel0", {1, 0, 0, 0, 0}, ""},
        {"Vexa-K300_r12p345-6789rel1011", {1, 12, 345, 6789, 1011}, ""},
        {"Vexa-K300_r2147483647p2147483647-2147483647rel2147483647",
         {1, 2147483647, 2147483647, 2147483647, 2147483647},
         ""},
        // Decimal, whatever the zeros in front.
        {"Vexa-K300_r010p007-0008rel00009", {1, 10, 7, 8, 9}, ""},
    });
}

TEST(DriverName, NumbersWithMoreThanDigitsThenReadAsFarAsTheyGo) {
    check({
        {"Vexa-K300_r5xp0y-06zrel0.", {1, 5, 0, 6, 0}, ""},
        {"Vexa-K300_r5_p0_-06_rel0_", {1, 5, 0, 6, 0}, ""},
        {"Vexa-K300_r0x10p0-06rel0x10", {1, 0, 0, 6, 0}, ""},
        {"Vexa-K300_r1,000p1.5-1e3rel1'000", {1, 1, 1, 1, 1}, ""},
        // White space and a sign may come first.
        {"Vexa-K300_r \t\n\v\f\r5p 0- 06rel 0", {1, 5, 0, 6, 0}, ""},
        {"Vexa-K300_r+5p+0-+06rel+0", {1, 5, 0, 6, 0}, ""},
        {"Vexa-K300_r-5p0--6rel-7", {1, -5, 0, -6, -7}, ""},
        {"Vexa-K300_r-2147483648p0--2147483648rel -2147483648",
         {1, -2147483647 - 1, 0, -2147483647 - 1, -2147483647 - 1},
         ""},
    });
}

TEST(DriverName, DelimitersThatRecurThenTheFirstOnesCount) {
    check({
        {"Vexa-K300_r5p1p2-3-4rel5rel6", {1, 5, 1, 3, 5}, ""},
        {"Vexa-K300_r5_r6p0-06rel0", {1, 5, 0, 6, 0}, ""},
        // The other delimiters are not looked for before their turn.
        {"Vexa-K300_r5-1rel2p3-4rel5", {1, 5, 3, 4, 5}, ""},
        {"Vexa-K300_r5p6rel7-8rel9", {1, 5, 6, 8, 9}, ""},
        {"Vexa-K300_r5p0-06re1rel0", {1, 5, 0, 6, 0}, ""},
    });
}

TEST(DriverName, ReadsAnEmptyPatchFromBehindItsDelimiter) {
    check({
        {"Vexa-K300_r5p-3rel0", {1, 5, -3, 3, 0}, ""},
        {"Vexa-K300_r5p -3rel0", {1, 5, -3, 3, 0}, ""},
        {"Vexa-200_r5p-2147483647rel0", {0, 5, -2147483647, 2147483647, 0}, ""},
        // As many characters are read as stand before the delimiter in the
        // whole name: twelve here, so that the digit behind them is not seen.
        {"Vexa-200_r5p-00000000003rel0", {0, 5, -3, 3, 0}, ""},
        {"Vexa-200_r5p-000000000003rel0", {0, 5, 0, 3, 0}, ""},
    });
}

TEST(DriverName, OtherEmptyNumbersThenConversionFails) {
    check({
        {"Vexa-K300_rp0-06rel0", {1, -1, -1, -1, -1}, NO_NUMBER},
        {"Vexa-K300_r5p- 3rel0", {1, 5, -1, -1, -1}, NO_NUMBER},
        {"Vexa-K300_r5p0-rel0", {1, 5, 0, -1, -1}, NO_NUMBER},
        {"Vexa-K300_r5p0-06rel", {1, 5, 0, 6, -1}, NO_NUMBER},
        {"Vexa-K300_r5p0-06rel ", {1, 5, 0, 6, -1}, NO_NUMBER},
    });
}

TEST(DriverName, NumbersWithoutDigitsThenConversionFails) {
    check({
        {"Vexa-K300_rXp0-06rel0", {1, -1, -1, -1, -1}, NO_NUMBER},
        {"Vexa-K300_r5pX-06rel0", {1, 5, -1, -1, -1}, NO_NUMBER},
        {"Vexa-K300_r5p0-X6rel0", {1, 5, 0, -1, -1}, NO_NUMBER},
        {"Vexa-K300_r5p0-06relX", {1, 5, 0, 6, -1}, NO_NUMBER},
        {"Vexa-K300_r+-5p0-06rel0", {1, -1, -1, -1, -1}, NO_NUMBER},
        {"Vexa-K300_r- 5p0-06rel0", {1, -1, -1, -1, -1}, NO_NUMBER},
    });
}

TEST(DriverName, NumbersOutOfRangeThenConversionFails) {
    for (const std::string number :
         {"2147483648", "-2147483649", "4294967296", "9223372036854775808", "-9223372036854775809",
          "99999999999999999999999999"}) {
        check({
            {"Vexa-K300_r" + number + "p0-06rel0", {1, -1, -1, -1, -1}, NO_NUMBER},
            {"Vexa-K300_r5p0-" + number + "rel0", {1, 5, 0, -1, -1}, NO_NUMBER},
            {"Vexa-K300_r5p0-06rel" + number, {1, 5, 0, 6, -1}, NO_NUMBER},
        });
        if (number.front() != '-')
            check({{"Vexa-K300_r5p" + number + "-06rel0", {1, 5, -1, -1, -1}, NO_NUMBER}});
    }
}

TEST(DriverName, WrongBeginningThenPrefixIsNamed) {
    for (const char* name : {"", "V", "Vexa", "Vexa_", "vexa-K300_r5p0-06rel0",
                             "VEXA-K300_r5p0-06rel0", " Vexa-K300_r5p0-06rel0", "K300_r5p0-06rel0",
                             "libVexa-K300_r5p0-06rel0", "Vex-K300_r5p0-06rel0"})
        check({{name, {-1, -1, -1, -1, -1}, WRONG_PREFIX}});
}

TEST(DriverName, DelimiterMissingThenItIsNamedAndEarlierNumbersStay) {
    check({
        {"Vexa-", {-1, -1, -1, -1, -1}, NO_REVISION},
        {"Vexa-K300", {-1, -1, -1, -1, -1}, NO_REVISION},
        {"Vexa-K300_", {-1, -1, -1, -1, -1}, NO_REVISION},
        {"Vexa-K300r5p0-06rel0", {-1, -1, -1, -1, -1}, NO_REVISION},
        {"Vexa-K300_R5p0-06rel0", {-1, -1, -1, -1, -1}, NO_REVISION},
        {"Vexa-K300_r", {1, -1, -1, -1, -1}, NO_PATCH},
        {"Vexa-K300_r5", {1, -1, -1, -1, -1}, NO_PATCH},
        {"Vexa-K300_r5P0-06rel0", {1, -1, -1, -1, -1}, NO_PATCH},
        {"Vexa-K300_r5p", {1, 5, -1, -1, -1}, NO_VERSION},
        {"Vexa-K300_r5p0_06rel0", {1, 5, -1, -1, -1}, NO_VERSION},
        {"Vexa-K300_r-5p0", {1, -5, -1, -1, -1}, NO_VERSION},
        {"Vexa-K300_r5p0-06", {1, 5, 0, -1, -1}, NO_RELEASE},
        {"Vexa-K300_r5p0-", {1, 5, 0, -1, -1}, NO_RELEASE},
        {"Vexa-K300_r5p0-06dev0", {1, 5, 0, -1, -1}, NO_RELEASE},
        {"Vexa-K300_r5p0-06re", {1, 5, 0, -1, -1}, NO_RELEASE},
    });
}

TEST(DriverName, CoreOfNoFamilyThenNothingIsKnown) {
    for (const char* core : {"K460", "K320", "K580", "100", "", "0", "2", "20", "2000", " 200",
                             "200 ", "k300", "K30", "K3000", "K300_", "_K300", "Vexa-K300"})
        check({{"Vexa-" + std::string(core) + "_r5p0-06rel0", {-1, -1, -1, -1, -1}, UNKNOWN_CORE}});
    // Told before the delimiters behind it are looked for.
    check({{"Vexa-K460_r", {-1, -1, -1, -1, -1}, UNKNOWN_CORE}});
}

TEST(DriverName, ParsedByTheCallerThenTheErrorIsThrown) {
    Parsed name;
    const std::string err = stderr_of([&] {
        EXPECT_THROW(name.parse_driver_name("K300"), std::runtime_error);
        EXPECT_THROW(name.parse_driver_name("Vexa-K300"), std::runtime_error);
        EXPECT_THROW(name.parse_driver_name("Vexa-K460_r5p0-06rel0"), std::runtime_error);
        EXPECT_THROW(name.parse_driver_name("Vexa-K300_r5"), std::runtime_error);
        EXPECT_THROW(name.parse_driver_name("Vexa-K300_r5p0"), std::runtime_error);
        EXPECT_THROW(name.parse_driver_name("Vexa-K300_r5p0-06"), std::runtime_error);
        EXPECT_THROW(name.parse_driver_name("Vexa-K300_rp0-06rel0"), std::invalid_argument);
        EXPECT_THROW(name.parse_driver_name("Vexa-K300_r2147483648p0-06rel0"), std::out_of_range);
    });
    EXPECT_EQ(err, "");

    name.parse_driver_name("Vexa-200_r4p1-01rel2");
    EXPECT_EQ(fields_of(name), (Fields{0, 4, 1, 1, 2}));
    // Each number is written as soon as it is known, and only then.
    EXPECT_THROW(name.parse_driver_name("Vexa-K300_r6p7-"), std::runtime_error);
    EXPECT_EQ(fields_of(name), (Fields{1, 6, 7, 1, 2}));
}

// The parse in the words of the standard library.
void parse_in_words(const std::string& name, Fields* fields) {
    if (name.substr(0, 5) != "Vexa-")
        throw std::runtime_error(WRONG_PREFIX);
    const auto find = [&](const char* delimiter, std::size_t from, const std::string& error) {
        const std::size_t at = name.find(delimiter, from);
        return at < name.size() ? at : throw std::runtime_error(error);
    };
    const std::size_t r = find("_r", 5, NO_REVISION);
    const std::string core(name.begin() + 5, name.begin() + static_cast<std::ptrdiff_t>(r));
    if (core != "200" && core != "K300")
        throw std::runtime_error(UNKNOWN_CORE);
    (*fields)[0] = core == "K300";
    const std::size_t p = find("p", r + 2, NO_PATCH);
    (*fields)[1] = standard_stoi(name.substr(r + 2, p));
    const std::size_t hyphen = find("-", p + 1, NO_VERSION);
    (*fields)[2] = standard_stoi(name.substr(p + 1, hyphen));
    const std::size_t rel = find("rel", hyphen + 1, NO_RELEASE);
    (*fields)[3] = standard_stoi(name.substr(hyphen + 1, rel));
    (*fields)[4] = standard_stoi(name.substr(rel + 3));
}

void check_random_names() {
    const Pieces pieces = {"_r",         "p",  "-",  "rel",         "0",   "5",  "06",
                           "+",          " ",  "\t", "X",           ".",   "_",  "r",
                           "2147483647", "\n", "e",  "99999999999", "p0-", "_r5"};
    Random_texts random;
    std::string expected_err;
    Differences differences;
    const std::string err = stderr_of([&] {
        for (int i = 0; i < 100000 / COUNT_CUT; ++i) {
            const std::string core[] = {"Vexa-K300_r", "Vexa-200_r5p", "Vexa-200_r4p1-", "Vexa-"};
            const std::string name = core[random.below(4)] + random.text(pieces, 9);
            Fields expected = {-1, -1, -1, -1, -1};
            try {
                parse_in_words(name, &expected);
            } catch (const std::exception& error) {
                expected_err += driver_name_error(name, error.what());
            }
            if (fields_of(Parsed(name)) != expected)
                differences.add(name);
        }
    });
    EXPECT_EQ(differences.found(), "");
    EXPECT_TRUE(err == expected_err); // too long to be shown
}

TEST(DriverName, AnyTextThenAsTheStandardLibraryReadsIt) {
    check_random_names();
}

TEST(DriverName, LocaleThatGroupsDigitsThenTheSame) {
    const Grouping_locale grouping;
    check_random_names();
    check({{"Vexa-K300_r1,000p1;5-06rel0", {1, 1, 1, 6, 0}, ""}});
}

TEST(DriverNameOrder, TheFirstNumbersThatDifferDecideAndTheGreaterComesFirst) {
    // With -1, what could not be read comes after everything that could.
    const std::int32_t values[] = {-5, -1, 0, 2147483647};
    std::vector<Parsed> names;
    for (std::size_t i = 0; i < 4 * 4 * 4 * 4 * 4; ++i) {
        Parsed name;
        name.core_id = values[i / 256];
        name.revision = values[i / 64 % 4];
        name.patch = values[i / 16 % 4];
        name.version = values[i / 4 % 4];
        name.release = values[i % 4];
        names.push_back(name);
    }
    for (std::size_t a = 0; a < names.size(); ++a)
        for (std::size_t b = 0; b < names.size(); ++b)
            if (names[a].before(names[b]) != (a >= b))
                FAIL() << a << " " << b;
}

TEST(DriverNameOrder, EqualNamesComeBeforeEachOther) {
    const Parsed name("Vexa-K300_r5p0-06rel0");
    const Parsed same("Vexa-K300_r05p00-6rel00");
    EXPECT_TRUE(name.before(same));
    EXPECT_TRUE(same.before(name));
    EXPECT_TRUE(name.before(name));
    EXPECT_TRUE(Parsed().before(Parsed()));
}

TEST(DriverNameOrder, NewerDriverThenItComesFirst) {
    const Parsed newer("Vexa-K300_r5p1-00rel0");
    const Parsed older("Vexa-K300_r5p0-06rel0");
    EXPECT_TRUE(newer.before(older));
    EXPECT_FALSE(older.before(newer));
    EXPECT_TRUE(older.before(Parsed("Vexa-200_r9p9-09rel9")));
}

} // namespace
