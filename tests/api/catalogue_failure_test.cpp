// SPDX-License-Identifier: MIT
#include "api_test.hpp"

namespace {

using Catalogue = Api_test;

// A way in which a plug-in fails when it is asked for its compilers, after a
// good answer when it was opened.
struct Failure {
    const char* name;
    std::string second_record;      // of the steering file
    std::string error;              // behind what stands for the plug-in
    std::vector<std::string> calls; // behind those when it was opened
};

Fake_plugin failing(const Failure& failure) {
    Fake_plugin plugin = gles_plugin();
    plugin.record(2).core("k58x", "r0p0_00rel0").pair("compiler_type", "openglessl");
    return plugin.line(failure.second_record);
}

// "PATH" and "DRIVER" stand for the plug-in's.
std::vector<Failure> failures() {
    const std::string no_version = "Driver 'DRIVER' doesn't report a flexible version string.\n";
    const std::string bad = "Driver 'DRIVER' doesn't report a valid flexible version string: ";
    std::vector<Failure> rows = {
        {"no flexible version", "", no_version, {"get_capabilities"}},
        {"no list", "null-entries", no_version, {"get_capabilities"}},
        {"an empty list", "num-entries 0", no_version, {"get_capabilities"}},
        {"a key without its value", "text flexible_version", no_version, {"get_capabilities"}},
        {"a null flexible version", "pair flexible_version -", bad + "\n", {"get_capabilities"}},
        {"a bad one behind a good one",
         "pair flexible_version 1.0.0\npair flexible_version 1.0",
         bad + "1.0\n",
         {"get_capabilities"}},
        {"an unknown key before no flexible version",
         "pair foo bar",
         "Unknown flexible capability. Key: foo, Value: bar\n" + no_version,
         {"get_capabilities"}},
        {"a bad language version, too",
         "pair openglessl_version none",
         no_version,
         {"get_capabilities"}},
    };
    for (const char* const text : {"3.1", "", "abc", "1", "1.", "1..2", "1.2.", "1.2.x", "x1.2.3",
                                   "1,2,3", ".1.2.3", "1.2%2031", "1%20.2.3"})
        rows.push_back({text,
                        std::string("pair flexible_version ") + text,
                        bad + text + "\n",
                        {"get_capabilities"}});
    for (const int result : {1, -1, 4, 2147483647})
        rows.push_back({"result",
                        "pair flexible_version 1.0.0\nresult " + std::to_string(result),
                        "Could not get capabilities of library at PATH.\n",
                        {"get_capabilities"}});
    return rows;
}

std::string replaced(std::string text, std::string_view part, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += by.size())
        text.replace(at, part.size(), by);
    return text;
}

std::string error_of(const Failure& failure, const Plugin_directory& plugins, const char* driver) {
    std::string text = replaced(failure.error, "%20", " ");
    text = replaced(text, "DRIVER", driver);
    return replaced(text, "PATH", plugins.path("openglessl", std::string("lib") + driver + ".so"));
}

TEST_F(Catalogue, AFailingPluginEndsTheCatalogueAndKeepsEarlierEntries) {
    constexpr const char* DRIVERS[] = {NEWEST, MIDDLE, OLDEST};
    for (const Failure& failure : failures()) {
        for (std::size_t failing_at = 0; failing_at < 3; ++failing_at) {
            SCOPED_TRACE(failure.name + std::string(" ") + std::to_string(failing_at));
            Plugin_directory some;
            for (std::size_t i = 0; i < 3; ++i)
                some.add_driver("openglessl", DRIVERS[i],
                                i == failing_at ? failing(failure) : gles_plugin());

            EXPECT_EQ(initialise(some.root()), error_of(failure, some, DRIVERS[failing_at]));
            std::string expected;
            for (std::size_t i = 0; i < failing_at; ++i)
                expected += std::string(DRIVERS[i]) + " Vexa-K460 r0p0_00rel0 openglessl 320\n";
            EXPECT_EQ(catalogue(), expected);

            const std::string log = some.take_log();
            for (std::size_t i = 0; i < 3; ++i) {
                std::string seen = calls_when_opened("openglessl", DRIVERS[i]);
                if (i < failing_at)
                    seen += calls_when_listed("openglessl", DRIVERS[i]);
                else if (i == failing_at)
                    seen += calls("openglessl", DRIVERS[i], failure.calls);
                if (i >= failing_at)
                    seen += calls("openglessl", DRIVERS[i], {"unload"});
                EXPECT_EQ(lines_of(log, DRIVERS[i]), seen);
            }
            vexacm_release_libraries();
        }
    }
}

TEST_F(Catalogue, DoesNotHandBackTheRecordWithoutAValidFlexibleVersion) {
    for (const char* const version : {"", "pair flexible_version 1.0"}) {
        SCOPED_TRACE(version);
        Plugin_directory some;
        Fake_plugin plugin = gles_plugin();
        plugin.record(2).pair("compiler_type", "openglessl").core("k46x", "r0p0_00rel0");
        some.add_driver("openglessl", NEWEST, plugin.line(version));
        EXPECT_NE(initialise(some.root()), "");
        EXPECT_EQ(some.take_log(), calls_when_opened("openglessl", NEWEST) +
                                       calls("openglessl", NEWEST, {"get_capabilities", "unload"}));
        vexacm_release_libraries();
    }
}

TEST_F(Catalogue, AFailingCallIsNotHandedBackEither) {
    Fake_plugin plugin = gles_plugin();
    plugin.record(2).result(1);
    plugins.add_driver("openglessl", NEWEST, plugin);
    EXPECT_EQ(initialise(),
              "Could not get capabilities of library at " + file("openglessl", NEWEST) + ".\n");
    EXPECT_EQ(plugins.take_log(), calls_when_opened("openglessl", NEWEST) +
                                      calls("openglessl", NEWEST, {"get_capabilities", "unload"}));
    EXPECT_EQ(catalogue(), "");
}

TEST_F(Catalogue, APluginWithoutAFlexibleVersionIsOpenedAndEndsTheCatalogue) {
    Fake_plugin plugin;
    plugin.record().pair("compiler_type", "openglessl").core("k46x", "r0p0_00rel0");
    plugins.add_driver("openglessl", NEWEST, plugin);
    plugins.add_driver("opencl", OLDEST, opencl_plugin());
    EXPECT_EQ(initialise(),
              "Driver 'Vexa-K300_r5p0-06rel0' doesn't report a flexible version string.\n");
    EXPECT_EQ(catalogue(), "");
}

TEST_F(Catalogue, AFailingPluginOfOneLanguageHidesTheOtherLanguage) {
    Fake_plugin opencl = opencl_plugin();
    opencl.record(2).result(-1);
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.add_driver("opencl", NEWEST, opencl);
    EXPECT_EQ(initialise(),
              "Could not get capabilities of library at " + file("opencl", NEWEST) + ".\n");
    EXPECT_EQ(catalogue(), "");
}

TEST_F(Catalogue, ThreeNumbersAreEnoughOfAFlexibleVersion) {
    // At the second time negative numbers and others than 1 to 3 pass, too.
    for (const char* const version :
         {"3.1.0-beta", "1.0.0", "3.9.9", " 1. 2. 3", "1.2.3.4", "1.2.3x", "-1.-2.-3", "0.0.0",
          "+1.+2.+3", "99.0.0", "\t1.\n2.\v3 "}) {
        SCOPED_TRACE(version);
        Fake_plugin plugin = gles_plugin();
        plugin.record(2).pair("compiler_type", "openglessl").pair("flexible_version", version);
        plugin.core("k46x", "r0p0_00rel0");
        const One_plugin one(plugin);
        EXPECT_EQ(catalogue(), "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 0\n");
    }
}

TEST_F(Catalogue, TheLastFlexibleVersionCounts) {
    Fake_plugin plugin = gles_plugin();
    plugin.record(2).pair("compiler_type", "openglessl").core("k46x", "r0p0_00rel0");
    plugin.pair("flexible_version", "bad").pair("flexible_version", "2.0.0");
    const One_plugin one(plugin);
    EXPECT_EQ(catalogue(), "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 0\n");
}

} // namespace
