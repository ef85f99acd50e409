// SPDX-License-Identifier: MIT
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "captured_stderr.hpp"
#include "compiler_kit.hpp"

namespace {

struct Filter {
    const char* text;
    bool passes;
};

TEST(CompilerMatch, PassesWhenEveryFilterDoes) {
    const std::vector<Filter> drivers = {{nullptr, true},
                                         {"Vexa-K300_r5p0-06rel0", true},
                                         {"Vexa-K300_r5p0-06rel", false},
                                         {"Vexa-K300_r5p0-06rel00", false},
                                         {"", false}};
    const std::vector<Filter> cores = {{nullptr, true},       {"Vexa-K460", true},  {"k46x", false},
                                       {"Vexa-K4", false},    {"vexa-k460", false}, {"", false},
                                       {"Vexa-K4600", false}, {"Vexa-*", false}};
    const std::vector<Filter> revisions = {{nullptr, true},
                                           {"r2p1_05rel3", true},
                                           {"r2p1_5rel3", false},
                                           {"r2p1_05rel3 ", false},
                                           {"", false}};
    const std::vector<Filter> apis = {
        {nullptr, true}, {"openglessl", true}, {"opencl", false}, {"opengles", false}, {"", false}};

    for (const bool binary_output : {false, true}) {
        Compiler_arguments arguments;
        arguments.binary_output = binary_output;
        const Compiler compiler = arguments.make();
        const std::vector<Filter> binary_outputs = {
            {nullptr, true}, {"true", binary_output}, {"false", !binary_output},
            {"TRUE", false}, {"False", false},        {"1", false},
            {"0", false},    {"yes", false},          {"", false},
            {"tru", false},  {"true ", false},        {"falsehood", false}};
        const struct {
            std::uint32_t minimum;
            bool passes;
        } versions[] = {{0, true},
                        {100, true},
                        {319, true},
                        {320, true},
                        {321, false},
                        {2147483648, false},
                        {std::numeric_limits<std::uint32_t>::max(), false}};
        const std::string err = stderr_of([&] {
            for (const Filter& driver : drivers)
                for (const Filter& core : cores)
                    for (const Filter& revision : revisions)
                        for (const Filter& api : apis)
                            for (const Filter& binary : binary_outputs)
                                for (const auto& version : versions)
                                    ASSERT_EQ(compiler.matches(driver.text, core.text,
                                                               revision.text, api.text, binary.text,
                                                               version.minimum),
                                              driver.passes && core.passes && revision.passes &&
                                                  api.passes && binary.passes && version.passes);
        });
        EXPECT_EQ(err, "");
    }
}

TEST(CompilerMatch, EmptyTextsMatchWhatIsEmpty) {
    Compiler_arguments arguments;
    arguments.driver_name = arguments.core_name = arguments.core_revision = arguments.api_name = "";
    const Compiler compiler = arguments.make();
    EXPECT_TRUE(compiler.matches("", "", "", "", nullptr, 0));
    EXPECT_FALSE(compiler.matches("", "", "", "", "", 0));
    EXPECT_FALSE(compiler.matches(" ", "", "", "", nullptr, 0));
    EXPECT_FALSE(compiler.matches("", " ", "", "", nullptr, 0));
    EXPECT_FALSE(compiler.matches("", "", " ", "", nullptr, 0));
    EXPECT_FALSE(compiler.matches("", "", "", " ", nullptr, 0));
}

TEST(CompilerMatch, CoresAreToldByTheNameThatCallersSee) {
    const std::vector<std::string> reported = {
        "k30x",      "k32x",      "k42x",      "k46x",      "k52x",      "k53x",      "k56x",
        "k58x",      "Vexa-K300", "Vexa-K320", "Vexa-K420", "Vexa-K460", "Vexa-K520", "Vexa-K530",
        "Vexa-K560", "Vexa-K580", "Vexa-K350", "k99x",      ""};
    std::vector<Compiler> compilers;
    for (const std::string& name : reported) {
        Compiler_arguments arguments;
        arguments.core_name = name;
        compilers.push_back(arguments.make());
    }
    for (const Compiler& compiler : compilers)
        for (const Compiler& other : compilers) {
            const std::string name = other.get_core_name();
            EXPECT_EQ(compiler.matches(nullptr, name.c_str(), nullptr, nullptr, nullptr, 0),
                      compiler.get_core_name() == name)
                << compiler.get_core_name() << " " << name;
        }
}

TEST(CompilerMatch, CappedVersionThenTheCapIsCompared) {
    Compiler_arguments arguments;
    arguments.core_name = "k42x";
    const Compiler compiler = arguments.make();
    EXPECT_TRUE(compiler.matches(nullptr, "Vexa-K420", nullptr, nullptr, nullptr, 310));
    EXPECT_FALSE(compiler.matches(nullptr, "Vexa-K420", nullptr, nullptr, nullptr, 311));
    EXPECT_FALSE(compiler.matches(nullptr, "Vexa-K420", nullptr, nullptr, nullptr, 320));
}

TEST(CompilerMatch, NoVersionsThenOnlyMinimumZeroPasses) {
    Compiler_arguments arguments;
    arguments.api_versions = {};
    EXPECT_TRUE(arguments.make().matches(nullptr, nullptr, nullptr, nullptr, nullptr, 0));
    EXPECT_FALSE(arguments.make().matches(nullptr, nullptr, nullptr, nullptr, nullptr, 1));
}

TEST(CompilerMatch, VersionsAreComparedWithoutASign) {
    Compiler_arguments arguments;
    arguments.api_versions = {4294967295};
    EXPECT_TRUE(arguments.make().matches(nullptr, nullptr, nullptr, nullptr, nullptr, 4294967295));
    EXPECT_TRUE(arguments.make().matches(nullptr, nullptr, nullptr, nullptr, nullptr, 320));
}

} // namespace
