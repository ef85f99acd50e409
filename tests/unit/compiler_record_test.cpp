// SPDX-License-Identifier: MIT
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "captured_stderr.hpp"
#include "compiler_kit.hpp"
#include "loaded_library.hpp"
#include "plugin_directory.hpp"

namespace {

const char* const TRANSLATED[][2] = {
    {"k30x", "Vexa-K300"}, {"k32x", "Vexa-K320"}, {"k42x", "Vexa-K420"}, {"k46x", "Vexa-K460"},
    {"k52x", "Vexa-K520"}, {"k53x", "Vexa-K530"}, {"k56x", "Vexa-K560"}, {"k58x", "Vexa-K580"},
};

TEST(CoreDisplayName, ShortNameThenItsRow) {
    for (const auto& row : TRANSLATED) {
        EXPECT_EQ(Compiler::get_core_display_name(row[0]), row[1]);
        EXPECT_EQ(Compiler::get_core_display_name(row[1]), row[1]);
    }
}

TEST(CoreDisplayName, AnyOtherNameThenUnchanged) {
    const std::vector<std::string> names = {
        "",      "k99x",  "k35x",      "k37x",     "k10x",
        "k46",   "k46xx", "k4",        "K46X",     "K46x",
        " k46x", "k46x ", "Vexa-K460", "k46x_",    "x",
        "k31x",  "Vexa",  "Vexa-K350", "Vexa-100", std::string("k46x\0", 5)};
    for (const std::string& name : names)
        EXPECT_EQ(Compiler::get_core_display_name(name), name);
}

TEST(HighestApiVersion, LargestNumberCountsWhateverTheOrder) {
    const std::uint32_t most = std::numeric_limits<std::uint32_t>::max();
    const struct {
        std::vector<std::uint32_t> versions;
        std::uint32_t highest;
    } cases[] = {
        {{}, 0},
        {{0}, 0},
        {{100}, 100},
        {{100, 300, 310}, 310},
        {{310, 300, 100}, 310},
        {{100, 310, 300}, 310},
        {{310, 310}, 310},
        {{300, most, 310}, most},
        {{2147483648, 2147483647}, 2147483648},
        {{0, 1}, 1},
    };
    for (const auto& expected : cases)
        for (const char* api : {"openglessl", "opencl", ""})
            for (const char* core : {"Vexa-K300", "Vexa-K460", "k99x", ""})
                EXPECT_EQ(Compiler::get_actual_highest_api_version(core, api, expected.versions),
                          expected.highest)
                    << core << " " << api;
}

TEST(HighestApiVersion, ExactlyThreeTwentyThenCappedOnSomeCores) {
    const auto highest = &Compiler::get_actual_highest_api_version;
    for (const char* core : {"Vexa-K300", "Vexa-K320", "Vexa-K420"}) {
        EXPECT_EQ(highest(core, "openglessl", {100, 300, 310, 320}), 310U) << core;
        EXPECT_EQ(highest(core, "openglessl", {320}), 310U) << core;
        EXPECT_EQ(highest(core, "openglessl", {320, 100}), 310U) << core;
        // No other number is capped, and no other language.
        EXPECT_EQ(highest(core, "openglessl", {100, 300}), 300U) << core;
        EXPECT_EQ(highest(core, "openglessl", {319}), 319U) << core;
        EXPECT_EQ(highest(core, "openglessl", {321}), 321U) << core;
        EXPECT_EQ(highest(core, "openglessl", {320, 330}), 330U) << core;
        for (const char* api : {"opencl", "OpenGLESSL", "opengles", "openglessl ", ""})
            EXPECT_EQ(highest(core, api, {320}), 320U) << core << " " << api;
    }
    for (const char* core :
         {"Vexa-K460", "Vexa-K520", "Vexa-K530", "Vexa-K560", "Vexa-K580", "Vexa-K350", "Vexa-K370",
          "Vexa-100", "k30x", "k42x", "k99x", "", "Vexa-K30", "Vexa-K3000", "vexa-k300", "K300"})
        EXPECT_EQ(highest(core, "openglessl", {100, 300, 310, 320}), 320U) << core;
}

TEST(CompilerRecord, GettersThenWhatTheConstructorWasGiven) {
    Compiler_arguments arguments;
    arguments.core_revision = "any text";
    const std::string err = stderr_of([&] {
        const Compiler compiler = arguments.make();
        EXPECT_STREQ(compiler.get_driver_name(), "Vexa-K300_r5p0-06rel0");
        EXPECT_STREQ(compiler.get_core_name(), "Vexa-K460");
        EXPECT_STREQ(compiler.get_core_revision(), "any text");
        EXPECT_STREQ(compiler.get_api_name(), "openglessl");
        EXPECT_EQ(compiler.get_highest_api_version(), 320U);
    });
    EXPECT_EQ(err, "");

    arguments.api_name = "opencl";
    arguments.api_versions = {200, 120};
    EXPECT_STREQ(arguments.make().get_api_name(), "opencl");
    EXPECT_EQ(arguments.make().get_highest_api_version(), 200U);
}

TEST(CompilerRecord, FlagsThenEachIsKeptOnItsOwn) {
    for (const bool binary_output : {false, true})
        for (const bool prerotate : {false, true}) {
            Compiler_arguments arguments;
            arguments.binary_output = binary_output;
            arguments.prerotate = prerotate;
            EXPECT_EQ(arguments.make().is_binary_output_supported(), binary_output);
            EXPECT_EQ(arguments.make().is_prerotate_supported(), prerotate);
        }
}

TEST(CompilerRecord, CoreThenDisplayNameAndItsCap) {
    const struct {
        const char* reported;
        const char* shown;
        std::uint32_t version;
    } cases[] = {
        {"k30x", "Vexa-K300", 310},
        {"k32x", "Vexa-K320", 310},
        {"k42x", "Vexa-K420", 310},
        {"k46x", "Vexa-K460", 320},
        {"k52x", "Vexa-K520", 320},
        {"k53x", "Vexa-K530", 320},
        {"k56x", "Vexa-K560", 320},
        {"k58x", "Vexa-K580", 320},
        {"k99x", "k99x", 320},
        {"Vexa-K420", "Vexa-K420", 310},
        {"", "", 320},
    };
    for (const auto& expected : cases) {
        Compiler_arguments arguments;
        arguments.core_name = expected.reported;
        const Compiler compiler = arguments.make();
        EXPECT_STREQ(compiler.get_core_name(), expected.shown);
        EXPECT_EQ(compiler.get_highest_api_version(), expected.version) << expected.reported;
    }
}

TEST(CompilerRecord, ExtensionsGivenThenKept) {
    for (const char* text : {" ", "x", "GL_EXT_one GL_EXT_two ", "no blank at the end"}) {
        Compiler_arguments arguments;
        arguments.extensions = text;
        Compiler compiler = arguments.make();
        const std::string err = stderr_of([&] {
            EXPECT_STREQ(compiler.get_extensions(), text);
            EXPECT_STREQ(compiler.get_extensions(), text);
        });
        EXPECT_EQ(err, "");
    }
}

TEST(CompilerRecord, NoExtensionsGivenThenFoundOutOnce) {
    Compiler_arguments arguments;
    arguments.extensions = "";
    arguments.api_name = "opencl";
    Compiler compiler = arguments.make();
    EXPECT_EQ(stderr_of([&] { EXPECT_STREQ(compiler.get_extensions(), ""); }),
              "Library for this compiler is missing.\n");
    EXPECT_EQ(stderr_of([&] { EXPECT_STREQ(compiler.get_extensions(), ""); }), "");
}

TEST(CompilerRecord, AnotherCoreOfThePluginThenTheRestIsTheSame) {
    Compiler_arguments arguments;
    arguments.extensions = "";
    arguments.binary_output = true;
    auto first = std::make_unique<Compiler>(arguments.make());
    Compiler other(*first, "k42x", "r1p0_00rel0");
    EXPECT_STREQ(other.get_core_name(), "Vexa-K420");
    EXPECT_STREQ(other.get_core_revision(), "r1p0_00rel0");
    EXPECT_EQ(other.get_highest_api_version(), 310U);
    EXPECT_STREQ(first->get_core_name(), "Vexa-K460");
    EXPECT_EQ(first->get_highest_api_version(), 320U);

    // What one finds out is its own.
    const auto found = [](Compiler* compiler) {
        return stderr_of([&] { EXPECT_STREQ(compiler->get_extensions(), ""); });
    };
    EXPECT_NE(found(first.get()), "");
    EXPECT_EQ(found(first.get()), "");
    EXPECT_NE(found(&other), "");

    first.reset();
    EXPECT_STREQ(other.get_driver_name(), "Vexa-K300_r5p0-06rel0");
    EXPECT_STREQ(other.get_api_name(), "openglessl");
    EXPECT_TRUE(other.is_binary_output_supported());
    EXPECT_FALSE(other.is_prerotate_supported());
}

TEST(CompilerRecord, CompileThenThePluginGetsTheNamesItReported) {
    Plugin_directory plugins;
    const Loaded_library loaded(
        plugins.add_driver("openglessl", DRIVER, Fake_plugin::of_type("openglessl")));
    plugins.take_log();
    Compiler_arguments arguments;
    arguments.core_revision = "r2p1 and more";
    arguments.library = loaded.library;
    vexaoc_outputs outputs;
    EXPECT_TRUE(
        arguments.make().compile(&outputs, "text", "vertex", nullptr, 0, false, false, nullptr, 0));
    EXPECT_EQ(plugins.take_log(),
              log_of("openglessl/" + DRIVER_FILE,
                     {"compile core=k46x revision=r2p1%20and%20more binary=0 outputs=zeroed "
                      "options=4 shader_type vertex compiler_type openglessl source=text",
                      "release_outputs"}));
}

TEST(CompilerRecord, HoldsAShareOfTheLibrary) {
    Plugin_directory plugins;
    Compiler_arguments arguments;
    arguments.library =
        Loaded_library(plugins.add_driver("opencl", DRIVER, Fake_plugin::of_type("opencl")))
            .library;
    EXPECT_EQ(arguments.library.use_count(), 1);
    auto first = std::make_unique<Compiler>(arguments.make());
    auto second = std::make_unique<Compiler>(arguments.make());
    EXPECT_EQ(arguments.library.use_count(), 3);
    arguments.library.reset();
    plugins.take_log();
    first.reset();
    EXPECT_EQ(plugins.take_log(), "");
    second.reset();
    EXPECT_EQ(plugins.take_log(), log_of("opencl/" + DRIVER_FILE, {"unload"}));
}

TEST(CompilerRecord, MovedThenEverythingGoesAlong) {
    Plugin_directory plugins;
    Compiler_arguments arguments;
    arguments.library =
        Loaded_library(plugins.add_driver("opencl", DRIVER, Fake_plugin::of_type("opencl")))
            .library;
    arguments.driver_name = std::string(100, 'd');
    arguments.core_name = std::string(100, 'c');
    arguments.core_revision = std::string(100, 'r');
    arguments.binary_output = true;
    Compiler source = arguments.make();
    const char* const revision = source.get_core_revision();

    Compiler target = std::move(source);
    EXPECT_EQ(arguments.library.use_count(), 2);
    EXPECT_EQ(target.get_core_revision(), revision); // moved, not copied
    EXPECT_EQ(target.get_driver_name(), arguments.driver_name);
    EXPECT_EQ(target.get_core_name(), arguments.core_name);
    EXPECT_EQ(target.get_highest_api_version(), 320U);
    EXPECT_STREQ(target.get_extensions(), "GL_EXT_one GL_EXT_two ");
    EXPECT_TRUE(target.is_binary_output_supported());

    Compiler other = Compiler_arguments().make();
    std::swap(target, other);
    EXPECT_EQ(other.get_driver_name(), arguments.driver_name);
    EXPECT_STREQ(target.get_core_name(), "Vexa-K460");
    EXPECT_EQ(arguments.library.use_count(), 2);
}

} // namespace
