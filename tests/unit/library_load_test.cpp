// SPDX-License-Identifier: MIT
#include "library_load_test.hpp"

#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>

#include "grouping_locale.hpp"

namespace fs = std::filesystem;

namespace {

const char* const UPGRADE_INTERFACE =
    "This compiler manager supports library version v1.x.x only. Please upgrade to a later "
    "compiler manager version.\n";

TEST_F(LibraryLoad, GoodPluginThenItStaysOpenAsLongAsTheObject) {
    add(Fake_plugin::of_type("opencl"));
    expect_loaded();
    // The path is kept as it was given.
    path = plugins.root() + "//opencl/../opencl/" + DRIVER_FILE;
    expect_loaded();
}

TEST_F(LibraryLoad, NothingReportedThenItLoadsToo) {
    add(Fake_plugin());
    expect_loaded();
}

TEST_F(LibraryLoad, UnknownNameThenItLoadsAndSaysSo) {
    const Loaded_library loaded(
        plugins.add_driver("opencl", "odd", Fake_plugin::of_type("opencl").say("hello")));
    EXPECT_EQ(loaded.err,
              "hello\n" + driver_name_error("odd", "Name does not begin with \"Vexa-\""));
    EXPECT_TRUE(loaded.library->is_initialized());
    EXPECT_EQ(loaded.library->get_driver_name(), "odd");
    EXPECT_EQ(loaded.library->get_parsed_name().core_id, -1);
}

TEST_F(LibraryLoad, FileIsNoLibraryThenRefusedWithTheLoadersWords) {
    const std::string long_text(100000, '\n');
    for (const std::string& text : {std::string(), std::string("#!/bin/sh\nexit 0\n"), long_text}) {
        plugins.add_file("opencl", DRIVER_FILE, text);
        expect_refused(open_error(path), {});
    }
}

TEST_F(LibraryLoad, NoSuchFileThenRefusedWithTheLoadersWords) {
    expect_refused(open_error(path), {});
    // Without a slash the name is looked for where the system keeps libraries.
    add(Fake_plugin());
    path = DRIVER_FILE;
    expect_refused(open_error(path), {});
}

TEST_F(LibraryLoad, LibraryItNeedsIsMissingThenRefusedWithTheLoadersWords) {
    add(Fake_plugin(), "fake_plugin_needing_a_missing_library");
    expect_refused(open_error(path), {});
}

TEST_F(LibraryLoad, FunctionItNeedsIsMissingThenRefusedWhileOpening) {
    add(Fake_plugin(), "unresolved_plugin");
    expect_refused(open_error(path), {});
}

TEST_F(LibraryLoad, AFunctionIsMissingThenRefused) {
    for (const char* function : {"get_api_version", "compile", "release_outputs",
                                 "get_capabilities", "release_capabilities"}) {
        SCOPED_TRACE(function);
        add(Fake_plugin::of_type("opencl"), "fake_plugin_without_" + std::string(function));
        expect_refused("Library at " + path + " isn't implemented correctly\n", {"load", "unload"});
    }
}

TEST_F(LibraryLoad, InterfaceMajorIsNotOneThenRefused) {
    const std::uint32_t most = std::numeric_limits<std::uint32_t>::max();
    const struct {
        std::uint32_t major, minor, patch;
        std::string text;
    } versions[] = {
        {0, 0, 0, "0.0.0"},
        {0, 1, 1, "0.1.1"},
        {2, 0, 0, "2.0.0"},
        {257, 1, 0, "257.1.0"},
        {65537, 20, 300, "65537.20.300"},
        {2147483649, 2147483648, 2147483647, "2147483649.2147483648.2147483647"},
        {most, most, most, "4294967295.4294967295.4294967295"},
    };
    for (const bool grouping : {false, true})
        for (const auto& version : versions) {
            SCOPED_TRACE(version.text);
            const auto locale = grouping ? std::make_unique<Grouping_locale>() : nullptr;
            add(Fake_plugin::of_type("opencl").api_version(version.major, version.minor,
                                                           version.patch));
            expect_refused("Library at " + path + " has version " + version.text + ".\n" +
                               UPGRADE_INTERFACE,
                           {"load", "get_api_version", "unload"});
        }
}

TEST_F(LibraryLoad, InterfaceMajorIsOneThenItLoads) {
    const std::uint32_t most = std::numeric_limits<std::uint32_t>::max();
    add(Fake_plugin::of_type("opencl").api_version(1, 0, 0));
    expect_loaded();
    add(Fake_plugin::of_type("opencl").api_version(1, 2, 3));
    expect_loaded();
    add(Fake_plugin::of_type("opencl").api_version(1, most, most));
    expect_loaded();
}

TEST_F(LibraryLoad, CapabilitiesFailThenRefusedAndNothingIsHandedBack) {
    for (const int result :
         {1, 2, 4, -1, 256, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        SCOPED_TRACE(result);
        // What the failed record holds is not read.
        add(Fake_plugin::of_type("opencl").pair("flexible_version", "abc").result(result));
        expect_refused("Failed to get capabilities for library " + path + ".\n",
                       {"load", "get_api_version", "get_capabilities", "unload"});
    }
}

TEST_F(LibraryLoad, AMalformedFlexibleVersionIsReportedTwiceWhenItsMajorIsMissing) {
    const std::string malformed = "Invalid or malformed flexible version specified for library " +
                                  path + ".\nVersion specified: ";
    add(Fake_plugin().record().pair("flexible_version", "abc"));
    expect_refused(
        malformed + "abc\nLibrary at " + path +
            " uses flexible version 0.0.0.\nThis compiler manager supports flexible "
            "versions v1.x.x, v2.x.x and v3.x.x only. Please upgrade to a later "
            "compiler manager version.\n",
        {"load", "get_api_version", "get_capabilities", "release_capabilities", "unload"});
    add(Fake_plugin().record().pair("flexible_version", "1.2"));
    expect_refused(malformed + "1.2\n", {"load", "get_api_version", "get_capabilities",
                                         "release_capabilities", "unload"});
}

TEST_F(LibraryLoad, RefusedThenClosedBeforeItIsNamed) {
    const auto noisy = [](Fake_plugin plugin) {
        return plugin.say_on_load("loaded").say_on_unload("unloaded").say("asked");
    };
    const auto add_odd = [&](const Fake_plugin& plugin, const std::string& build = "fake_plugin") {
        return plugins.add_driver("opencl", "odd", noisy(plugin), build);
    };
    const std::string unnamed =
        "unloaded\n" + driver_name_error("odd", "Name does not begin with \"Vexa-\"");
    const Fake_plugin good = Fake_plugin::of_type("opencl");

    path = add_odd(good, "fake_plugin_without_compile");
    EXPECT_EQ(Loaded_library(path).err,
              "loaded\nLibrary at " + path + " isn't implemented correctly\n" + unnamed);

    path = add_odd(Fake_plugin(good).api_version(7, 8, 9));
    EXPECT_EQ(Loaded_library(path).err,
              "loaded\nLibrary at " + path + " has version 7.8.9.\n" + UPGRADE_INTERFACE + unnamed);

    path = add_odd(Fake_plugin(good).result(1));
    EXPECT_EQ(Loaded_library(path).err,
              "loaded\nasked\nFailed to get capabilities for library " + path + ".\n" + unnamed);

    path = add_odd(Fake_plugin(good).pair("flexible_version", "1"));
    EXPECT_EQ(Loaded_library(path).err,
              "loaded\nasked\nInvalid or malformed flexible version specified for library " + path +
                  ".\nVersion specified: 1\n" + unnamed);

    path = plugins.add_file("opencl", "libodd.so", "");
    EXPECT_EQ(Loaded_library(path).err,
              open_error(path) + driver_name_error("odd", "Name does not begin with \"Vexa-\""));
}

TEST_F(LibraryLoad, TwoObjectsOfOnePluginThenItClosesWithTheLast) {
    add(Fake_plugin::of_type("opencl"));
    Loaded_library first(path);
    Loaded_library second(path);
    plugins.take_log();
    first.library.reset();
    EXPECT_EQ(plugins.take_log(), "");
    vexaoc_api_version version = {};
    second.library->get_api_version(&version);
    EXPECT_EQ(version.major, 1U);
    plugins.take_log();
    second.library.reset();
    EXPECT_EQ(plugins.take_log(), log({"unload"}));
}

TEST_F(LibraryLoad, RefusedWhileAnotherObjectHasItOpenThenThatOneStaysOpen) {
    add(Fake_plugin::of_type("opencl").record(2).result(1));
    Loaded_library first(path);
    EXPECT_TRUE(first.library->is_initialized());
    plugins.take_log();
    expect_refused("Failed to get capabilities for library " + path + ".\n",
                   {"get_api_version", "get_capabilities"});
    first.library.reset();
    EXPECT_EQ(plugins.take_log(), log({"unload"}));
}

TEST_F(LibraryLoad, PluginIsOpenThenItsFunctionsAreNoOneElses) {
    const Loaded_library loaded(add(Fake_plugin::of_type("opencl")));
    ASSERT_TRUE(loaded.library->is_initialized());
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "vexaoc_compile"), nullptr);
}

} // namespace
