// SPDX-License-Identifier: MIT
#include <filesystem>

#include <dlfcn.h>

#include "api_test.hpp"

namespace {

// Plug-ins that are refused when they are opened, and odd file names.
using BadPlugin = Api_test;

constexpr const char* GOOD = "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 320\n";

// What is said of a file that the loader does not take.
std::string load_error(const std::string& path) {
    EXPECT_EQ(dlopen(path.c_str(), RTLD_NOW), nullptr);
    return "Couldn't load library at " + path + "\nLibrary load error: " + dlerror() + "\n";
}

std::string name_error(const std::string& name, const std::string& reason) {
    return "Driver name parse error: \"" + name + "\" has an unknown name format: " + reason + "\n";
}

// Expects the plug-in to be refused with this error, in which PATH stands for
// its path, after these calls; and others to be used all the same.
void expect_refused(const Fake_plugin& plugin, std::string error,
                    const std::vector<std::string>& seen, const char* build = "fake_plugin") {
    Plugin_directory plugins;
    const std::string path = plugins.add_driver("openglessl", OLDEST, plugin, build);
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    for (std::size_t at; (at = error.find("PATH")) != std::string::npos;)
        error.replace(at, 4, path);
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(vexacm_initialize_libraries(plugins.root().c_str())); }),
              error);
    EXPECT_EQ(catalogue(), GOOD);
    EXPECT_EQ(lines_of(plugins.take_log(), OLDEST), calls("openglessl", OLDEST, seen));
    vexacm_release_libraries();
}

TEST_F(BadPlugin, WhatIsNoLibraryIsToldAndPassedOver) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    const std::string library = read_file(file("openglessl", NEWEST));
    std::string other_machine = library.substr(0, 4096);
    other_machine[18] = '\xff';
    std::vector<std::string> paths = {
        plugins.add_file("opencl", "libVexa-K300_r1p0-00rel0.so", "no library"),
        plugins.add_file("opencl", "libVexa-K300_r2p0-00rel0.so", ""),
        plugins.add_file("opencl", "libVexa-K300_r3p0-00rel0.so", library.substr(0, 100)),
        plugins.add_file("opencl", "libVexa-K300_r4p0-00rel0.so", other_machine),
        plugins.path("opencl", "libVexa-K300_r6p0-00rel0.so"),
        plugins.path("opencl", "libVexa-K300_r7p0-00rel0.so"),
    };
    std::filesystem::create_directory(paths[4]);
    std::filesystem::create_symlink("nowhere", paths[5]);
    std::string expected;
    for (const std::string& name : plugins.listed("opencl"))
        expected += load_error(plugins.path("opencl", name));
    EXPECT_EQ(plugins.listed("opencl").size(), paths.size());
    EXPECT_EQ(initialise(), expected);
    EXPECT_EQ(catalogue(), GOOD);
}

TEST_F(BadPlugin, APluginThatLacksALibraryIsToldAndPassedOver) {
    const std::string path = plugins.add_driver("openglessl", OLDEST, gles_plugin(),
                                                "fake_plugin_needing_a_missing_library");
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    EXPECT_EQ(initialise(), load_error(path));
    EXPECT_EQ(catalogue(), GOOD);
    EXPECT_EQ(lines_of(plugins.take_log(), OLDEST), "");
}

TEST_F(BadPlugin, APluginThatLacksAFunctionOfOthersIsToldWhenItIsOpened) {
    const std::string path =
        plugins.add_driver("openglessl", NEWEST, Fake_plugin(), "unresolved_plugin");
    EXPECT_EQ(initialise(), load_error(path));
    EXPECT_EQ(catalogue(), "");
}

TEST_F(BadPlugin, APluginThatLacksAFunctionIsClosed) {
    for (const std::string function : {"get_api_version", "compile", "release_outputs",
                                       "get_capabilities", "release_capabilities"}) {
        SCOPED_TRACE(function);
        expect_refused(gles_plugin(), "Library at PATH isn't implemented correctly\n",
                       {"load", "unload"}, ("fake_plugin_without_" + function).c_str());
    }
}

TEST_F(BadPlugin, AnInterfaceVersionOtherThan1IsRefused) {
    struct Row {
        std::uint32_t major, minor, patch;
        const char* text;
    };
    for (const Row row :
         {Row{2, 0, 0, "2.0.0"}, Row{0, 9, 9, "0.9.9"},
          Row{4294967295, 4294967294, 2147483648, "4294967295.4294967294.2147483648"},
          Row{257, 1, 1, "257.1.1"}}) {
        SCOPED_TRACE(row.text);
        expect_refused(gles_plugin().api_version(row.major, row.minor, row.patch),
                       std::string("Library at PATH has version ") + row.text +
                           ".\nThis compiler manager supports library version v1.x.x only. "
                           "Please upgrade to a later compiler manager version.\n",
                       {"load", "get_api_version", "unload"});
    }
    for (const std::uint32_t number : {1u, 99u, 4294967295u}) {
        const One_plugin plugin(gles_plugin().api_version(1, number, number));
        EXPECT_EQ(catalogue(), GOOD);
    }
}

TEST_F(BadPlugin, APluginWhoseCapabilitiesFailIsRefusedAndNothingHandedBack) {
    for (const int result : {1, -1, 4, 256, 2147483647})
        expect_refused(gles_plugin().result(result),
                       "Failed to get capabilities for library PATH.\n",
                       {"load", "get_api_version", "get_capabilities", "unload"});
}

TEST_F(BadPlugin, FlexibleVersionsAreChecked) {
    const std::vector<std::string> seen = {"load", "get_api_version", "get_capabilities",
                                           "release_capabilities", "unload"};
    const auto malformed = [](const std::string& text) {
        return "Invalid or malformed flexible version specified for library PATH.\n"
               "Version specified: " +
               text + "\n";
    };
    const auto unsupported = [](const std::string& text) {
        return "Library at PATH uses flexible version " + text +
               ".\nThis compiler manager supports flexible versions v1.x.x, v2.x.x and v3.x.x "
               "only. Please upgrade to a later compiler manager version.\n";
    };
    struct Row {
        const char* version;
        std::string error;
    };
    const Row rows[] = {
        {"4.0.0", unsupported("4.0.0")},
        {"0.1.0", unsupported("0.1.0")},
        {"0.0.0", unsupported("0.0.0")},
        {"1000000.2000000.3000000", unsupported("1000000.2000000.3000000")},
        {"-1.0.0", unsupported("4294967295.0.0")},
        {"1.2", malformed("1.2")},
        {"3", malformed("3")},
        {"1..2", malformed("1..2")},
        {"1.2.x", malformed("1.2.x")},
        {"2,0,0", malformed("2,0,0")},
        {"abc", malformed("abc") + unsupported("0.0.0")},
        {"", malformed("") + unsupported("0.0.0")},
        {nullptr, malformed("") + unsupported("0.0.0")},
        {"v1.0.0", malformed("v1.0.0") + unsupported("0.0.0")},
        {"4", malformed("4") + unsupported("4.0.0")},
        {"7.8", malformed("7.8") + unsupported("7.8.0")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.version ? row.version : "null");
        // Every occurrence is looked at: a good one before or behind does not help.
        Fake_plugin alone;
        alone.record().pair("flexible_version", row.version);
        expect_refused(alone, row.error, seen);
        expect_refused(gles_plugin().pair("flexible_version", row.version), row.error, seen);
        expect_refused(alone.pair("flexible_version", "1.0.0"), row.error, seen);
        // Both are told.
        expect_refused(alone.pair("flexible_version", "9.9.9"), row.error + unsupported("9.9.9"),
                       seen);
    }
    for (const char* const version :
         {"1.0.0", "2.0.0", "3.9.9", "3.1.0-beta", " 1. 2. 3", "1.4294967295.0", "+1.0.0"}) {
        SCOPED_TRACE(version);
        const One_plugin plugin(gles_plugin().pair("flexible_version", version));
        EXPECT_EQ(catalogue(), GOOD);
    }
}

TEST_F(BadPlugin, OtherKeysAreNotLookedAtWhenAPluginIsOpened) {
    // Each is told once, from the second record; the first is only checked.
    const Fake_plugin plugin = gles_plugin()
                                   .pair("foo", "bar")
                                   .pair("Flexible_version", "9")
                                   .pair("flexible_version ", "9")
                                   .pair("foo", "flexible_version")
                                   .pair("undefine", "flexible_version");
    plugins.add_driver("openglessl", NEWEST, plugin);
    EXPECT_EQ(initialise(), "Unknown flexible capability. Key: foo, Value: bar\n"
                            "Unknown flexible capability. Key: Flexible_version, Value: 9\n"
                            "Unknown flexible capability. Key: flexible_version , Value: 9\n"
                            "Unknown flexible capability. Key: foo, Value: flexible_version\n");
    EXPECT_EQ(catalogue(), GOOD);
}

TEST_F(BadPlugin, OddRecordsPassTheCheckWhenAPluginIsOpened) {
    for (const char* const line : {"null-entries", "num-entries 0", "text flexible_version"}) {
        SCOPED_TRACE(line);
        Fake_plugin plugin;
        plugin.record().line(line);
        plugin.record(2).pair("compiler_type", "openglessl").pair("flexible_version", "1.0.0");
        const One_plugin one(plugin.core("k46x", "r0p0_00rel0"));
        EXPECT_EQ(find_compilers().size(), 1u);
    }
}

TEST_F(BadPlugin, ARefusedPluginIsClosedBeforeItIsNamed) {
    const std::string path = plugins.add(
        "openglessl", "libother.so",
        gles_plugin().api_version(2, 0, 0).say_on_load("loaded").say_on_unload("unloaded"));
    EXPECT_EQ(initialise(), "loaded\nLibrary at " + path +
                                " has version 2.0.0.\n"
                                "This compiler manager supports library version v1.x.x only. "
                                "Please upgrade to a later compiler manager version.\n"
                                "unloaded\n" +
                                name_error("other", "Name does not begin with \"Vexa-\""));
    EXPECT_EQ(catalogue(), "");
}

TEST_F(BadPlugin, WhatCannotBeLoadedIsNamedToo) {
    const std::string path = plugins.add_file("opencl", "notes.so.txt", "no library");
    EXPECT_EQ(initialise(),
              load_error(path) + name_error("notes.", "Name does not begin with \"Vexa-\""));
}

TEST_F(BadPlugin, NamesThatAreNoDriversAreToldAndUsed) {
    struct Row {
        const char* file_name;
        std::string driver_name;
        const char* reason; // null when there is nothing to tell
    };
    const Row rows[] = {
        {"libVexa-K300_r5p0-06rel0.so", "Vexa-K300_r5p0-06rel0", nullptr},
        {"libVexa-200_r4p1-01rel2.so", "Vexa-200_r4p1-01rel2", nullptr},
        {"Vexa-K300_r5p0-06rel0.so", "Vexa-K300_r5p0-06rel0", nullptr},
        {"libVexa-K300_r5p-3rel0.so", "Vexa-K300_r5p-3rel0", nullptr},
        {"xlibVexa-K300_r5p0-06rel0.so", "Vexa-K300_r5p0-06rel0", nullptr},
        {"libVexa-K300_r5p0-06rel0.so.1", "Vexa-K300_r5p0-06rel0.", nullptr},
        {"libVexa-K300_r5p0-06rel0.sox", "Vexa-K300_r5p0-06rel0", nullptr},
        {"libVexa-K300_r5p0-06rel0.so.so", "Vexa-K300_r5p0-06rel0.so", nullptr},
        {"libother.so", "other", "Name does not begin with \"Vexa-\""},
        {"libvexa-K300_r5p0-06rel0.so", "vexa-K300_r5p0-06rel0",
         "Name does not begin with \"Vexa-\""},
        {".so", "", "Name does not begin with \"Vexa-\""},
        {"libVexa-.so", "Vexa-", "Could not find revision delimiter \"_r\""},
        {"libVexa-K300.so", "Vexa-K300", "Could not find revision delimiter \"_r\""},
        {"libVexa-K460_r5p0-06rel0.so", "Vexa-K460_r5p0-06rel0", "Unknown core name"},
        {"libVexa-_r5p0-06rel0.so", "Vexa-_r5p0-06rel0", "Unknown core name"},
        {"libVexa-K300_r5.so", "Vexa-K300_r5", "Could not find patch delimiter \"p\""},
        {"libVexa-K300_r5p0.so", "Vexa-K300_r5p0", "Could not find version delimiter \"-\""},
        {"libVexa-K300_r5p0-06.so", "Vexa-K300_r5p0-06",
         "Could not find release delimiter \"rel\""},
        {"libVexa-K300_rXp0-06rel0.so", "Vexa-K300_rXp0-06rel0", "stoi"},
        {"libVexa-K300_r5p0-06rel.so", "Vexa-K300_r5p0-06rel", "stoi"},
        {"libVexa-K300_r2147483648p0-06rel0.so", "Vexa-K300_r2147483648p0-06rel0", "stoi"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.file_name);
        Plugin_directory some;
        some.add("openglessl", row.file_name, gles_plugin());
        EXPECT_EQ(initialise(some.root()),
                  row.reason ? name_error(row.driver_name, row.reason) : "");
        EXPECT_EQ(catalogue(), row.driver_name + " Vexa-K460 r0p0_00rel0 openglessl 320\n");
        vexacm_release_libraries();
    }
}

TEST_F(BadPlugin, FilesWithoutDotSoAreIgnored) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    for (const char* const name : {"readme.txt", "libVexa.s", "so", "libVexa_so", "lib.SO"})
        plugins.add_file("openglessl", name, "no library");
    std::filesystem::create_directory(plugins.path("openglessl", "folder"));
    plugins.add_file("openglessl", "folder/libinside.so", "no library");
    plugins.add_file("..", "libbeside.so", "no library");
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(), GOOD);
}

TEST_F(BadPlugin, MessagesComeInTheOrderOfTheFiles) {
    for (const char* const name : {"liba.so", "libb.so", "libc.so", "libd.so"}) {
        plugins.add_file("openglessl", name, "no library");
        plugins.add_file("opencl", name, "no library");
    }
    std::string expected;
    for (const char* const api : {"openglessl", "opencl"})
        for (const std::string& name : plugins.listed(api))
            expected += load_error(plugins.path(api, name)) +
                        name_error(name.substr(3, 1), "Name does not begin with \"Vexa-\"");
    EXPECT_EQ(initialise(), expected);
    EXPECT_EQ(catalogue(), "");
}

} // namespace
