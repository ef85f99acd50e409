// SPDX-License-Identifier: MIT
//
// The library against its model, on plug-ins that go to the limits.
// To run one case alone: HOSTILE_CASE=17 and --gtest_filter='*Hostile.*/Bytes'.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "caller.hpp"
#include "exercise.hpp"
#include "hostile.hpp"
#include "written.hpp"

namespace hostile {

namespace {

class Hostile : public testing::TestWithParam<unsigned> {};

/// Where two texts begin to differ: they may be of any length.
std::string difference(const std::string& expected, const std::string& actual) {
    std::size_t at = 0;
    while (at < expected.size() && at < actual.size() && expected[at] == actual[at])
        ++at;
    const std::size_t from = at < 200 ? 0 : at - 200;
    return "they differ at " + std::to_string(at) + " of " + std::to_string(expected.size()) +
           " and " + std::to_string(actual.size()) + "\n== the model\n" +
           expected.substr(from, 500) + "\n== the library\n" + actual.substr(from, 500) + "\n";
}

/// What would take too long to ask about every one of many compilers is asked
/// about some; none of them have the same rank unless they are the same.
void exercise_sparingly(model::Dice& dice, model::Manager& manager, const model::Other& other,
                        const model::Judge& judge) {
    bool agreed = true;
    const auto ask = [&](const model::Request& request) {
        if (agreed)
            agreed = judge(request, manager.answer(request), other(request));
    };
    ask(model::Initialise());
    ask(model::List_compilers());
    const model::Catalogue* const catalogue = manager.compilers();
    for (unsigned i = 0; agreed && catalogue && i < 3; ++i) {
        const auto count = static_cast<unsigned>(catalogue->entries.size());
        const unsigned id = i == 0 ? 0 : i == 1 ? count - 1 : dice.below(count);
        for (int property = 0; property < 8; ++property)
            ask(model::Ask{static_cast<model::Property>(property), id});
        ask(model::plain_compile(catalogue->entries[id].api_name, id));
        model::List_compilers filters;
        filters.core_name = catalogue->entries[id].core_name;
        filters.core_revision = catalogue->entries[id].core_revision;
        ask(filters);
    }
    ask(model::Release());
}

void exercise(const Case& that, model::Dice& dice, model::Manager& manager,
              const model::Other& other, const model::Judge& judge) {
    if (that.large)
        exercise_sparingly(dice, manager, other, judge);
    else
        model::exercise(dice, manager, other, judge);
}

/// Adds lines to the steering of every plug-in.
void add_manners(const Case& that, const Plugin_directory& files) {
    for (const model::Plugin& plugin : that.directory.plugins) {
        std::string steering = files.path(plugin.api, plugin.file_name);
        for (std::size_t dot; (dot = steering.find(".so")) != std::string::npos;)
            steering[dot] = '-';
        std::ofstream file(steering + ".steer", std::ios::app);
        for (const std::string& line : that.manners)
            file << line << "\n";
    }
}

void try_case(unsigned family, unsigned number) {
    Case that = generate(family, number);
    Plugin_directory files;
    model::write(that.directory, files);
    add_manners(that, files);
    model::Dice dice(number);
    model::Manager manager(that.directory);
    model::Caller caller(that.directory, files);
    std::string history;
    exercise(
        that, dice, manager, [&](const model::Request& request) { return caller.answer(request); },
        [&](const model::Request& request, const model::Reply& predicted,
            const model::Reply& actual) {
            history += shown(request).substr(0, 200) + "\n";
            const std::string expected = shown(predicted);
            const std::string observed = shown(actual);
            if (expected == observed)
                return true;
            ADD_FAILURE() << "case " << number << " of " << families()[family].name << ": "
                          << difference(expected, observed)
                          << "== requests, the last is the one that differs\n"
                          << history;
            return false;
        });
}

TEST_P(Hostile, PluginsThenWhatTheModelPredicts) {
    const char* const only = std::getenv("HOSTILE_CASE");
    unsigned num_tried = 0;
    for (unsigned number = 0; number < families()[GetParam()].count && !HasFailure(); ++number)
        if (!only || number == static_cast<unsigned>(std::atoi(only))) {
            try_case(GetParam(), number);
            ++num_tried;
        }
    EXPECT_GT(num_tried, 0U) << "no such case";
}

INSTANTIATE_TEST_SUITE_P(Families, Hostile,
                         testing::Range(0U, static_cast<unsigned>(families().size())),
                         [](const auto& family) { return families()[family.param].name; });

/// What becomes of the hostile plug-in when the library is initialised.
std::string fate(const model::Manager& manager, const model::Reply& initialised) {
    if (initialised.result != "true")
        return initialised.result;
    bool offered = false;
    bool older_offered = false;
    for (const model::Entry& entry : manager.compilers()->entries) {
        const bool older = entry.driver_name == "Vexa-K300_r1p0-00rel0";
        older_offered = older_offered || older;
        offered = offered || (!older && entry.driver_name != "Vexa-K300_r9p0-00rel0");
    }
    return offered ? "offered" : older_offered ? "not offered" : "ends the catalogue";
}

// Cases made by chance are only worth something where they differ and where
// chance hits. The model is asked alone.
TEST(HostileCases, AllOfThemThenEachIsAnotherAndEveryFateComesUp) {
    std::set<std::string> different;
    std::map<std::string, unsigned> fates;
    unsigned count = 0;
    for (unsigned family = 0; family < families().size(); ++family) {
        for (unsigned number = 0; number < families()[family].count; ++number) {
            const Case that = generate(family, number);
            model::Manager manager(that.directory);
            ++fates[fate(manager, manager.answer(model::Initialise()))];
            ++count;
            if (that.large) // each is a case of its own in the source
                continue;
            std::string told = shown(that.directory);
            for (const std::string& line : that.manners)
                told += line + "\n";
            EXPECT_TRUE(different.insert(told).second) << family << ", " << number;
        }
        std::printf("%6u %s\n", families()[family].count, families()[family].name);
    }
    std::printf("%6u cases\n", count);
    EXPECT_GE(count, 500U);
    for (const char* const name : {"offered", "not offered", "ends the catalogue",
                                   "invalid argument: stoi", "out of range: stoi"}) {
        std::printf("%6u %s\n", fates[name], name);
        EXPECT_GT(fates[name], 0U) << name;
    }
}

} // namespace

} // namespace hostile
