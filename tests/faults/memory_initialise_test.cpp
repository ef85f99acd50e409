// SPDX-License-Identifier: MIT
#include "fault_test.hpp"

namespace {

class MemoryRunsOutInitialising : public Fault_test {
protected:
    MemoryRunsOutInitialising() { initialise_in_scenario(); }
};

TEST_F(MemoryRunsOutInitialising, NoPlugins) {
    run_out_of_memory({"", "", ""});
}

TEST_F(MemoryRunsOutInitialising, NoDirectories) {
    plugins.remove("openglessl");
    plugins.remove("opencl");
    const std::string root = plugins.root() + "/" + std::string(600, 'x');
    bool initialised = false;
    scenario.act = [&] {
        initialised = false;
        initialised = vexacm_initialize_libraries(root.c_str());
    };
    scenario.result = [&] { return initialised ? catalogue() : "not initialised"; };
    run_out_of_memory({"",
                       "Unable to open library directory " + root + "/openglessl\n" +
                           "Unable to open library directory " + root + "/opencl\n",
                       ""});
}

TEST_F(MemoryRunsOutInitialising, NullDirectory) {
    scenario.act = [] { vexacm_initialize_libraries(nullptr); };
    scenario.result = [] { return ""; };
    std::string thrown;
    try {
        vexacm_initialize_libraries(nullptr);
    } catch (const std::logic_error& error) {
        thrown = error.what();
    }
    run_out_of_memory({"", "", thrown});
}

TEST_F(MemoryRunsOutInitialising, OnePlugin) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    run_out_of_memory({gles_compiler(NEWEST), "", ""});
}

TEST_F(MemoryRunsOutInitialising, BothPluginsOfADriver) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.add_driver("opencl", NEWEST, opencl_plugin());
    run_out_of_memory({opencl_compiler(NEWEST) + gles_compiler(NEWEST), "", ""});
}

TEST_F(MemoryRunsOutInitialising, SeveralDrivers) {
    plugins.add_driver("openglessl", MIDDLE, gles_plugin());
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.add_driver("opencl", OLDEST, opencl_plugin());
    run_out_of_memory(
        {gles_compiler(NEWEST) + gles_compiler(MIDDLE) + opencl_compiler(OLDEST), "", ""});
}

TEST_F(MemoryRunsOutInitialising, SeveralCores) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.pair("openglessl_version", "310").pair("openglessl_version", "320");
    plugin.core("k42x", "r1p0_00rel0").core("k58x", "r0p1_00rel0").core("k58x", "r0p1_01dev0");
    plugin.core("K350", "r0p0_00rel0").core("a core of another family", "r0");
    plugins.add_driver("openglessl", NEWEST, plugin);
    const std::string driver = NEWEST;
    run_out_of_memory({driver + " Vexa-K580 r0p1_01dev0 openglessl 320\n" + driver +
                           " Vexa-K580 r0p1_00rel0 openglessl 320\n" + driver +
                           " Vexa-K420 r1p0_00rel0 openglessl 310\n" + driver +
                           " a core of another family r0 openglessl 320\n",
                       "", ""});
}

TEST_F(MemoryRunsOutInitialising, MoreCoresThanThereIsRoomFor) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    std::string listed;
    for (int i = 0; i < 40; ++i) {
        plugin.core("k99x", "r0p0_00rel0");
        listed += NEWEST + std::string(" k99x r0p0_00rel0 openglessl 0\n");
    }
    plugins.add_driver("openglessl", NEWEST, plugin);
    run_out_of_memory({listed, "", ""});
}

TEST_F(MemoryRunsOutInitialising, CoresAndRevisionsOfAnotherForm) {
    Fake_plugin plugin = Fake_plugin::of_type("opencl");
    plugin.core("k", "").core("k46x", "").core("k46x", "rx").core("k46x", "r10p2");
    plugins.add_driver("opencl", NEWEST, plugin);
    const std::string driver = NEWEST;
    run_out_of_memory({driver + " Vexa-K460 r10p2 opencl 0\n" + driver + " Vexa-K460  opencl 0\n" +
                           driver + " Vexa-K460 rx opencl 0\n" + driver + " k  opencl 0\n",
                       "", ""});
}

TEST_F(MemoryRunsOutInitialising, EveryCapability) {
    Fake_plugin plugin = gles_plugin("320", "GL_a_name_too_long_for_a_short_string");
    plugin.pair("openglessl_extensions", "GL_Y").pair("opencl_extensions", "cl_y");
    plugin.pair("compiler_type", "opencl").pair("opencl_version", "200").pair("prerotate", "true");
    plugin.pair("undefine", "x").pair("architecture", "x").pair("compiler_type", "another");
    plugin.pair("foo", std::string(600, 'x').c_str()).binary_output(1);
    plugins.add_driver("openglessl", NEWEST, plugin);
    const std::string driver = NEWEST;
    run_out_of_memory(
        {driver + " Vexa-K460 r0p0_00rel0 openglessl 320 binary prerotate\n" + driver +
             " Vexa-K460 r0p0_00rel0 opencl 200 binary prerotate\n",
         "Unknown flexible capability. Key: foo, Value: " + std::string(600, 'x') + "\n", ""});
}

TEST_F(MemoryRunsOutInitialising, AFileThatIsNoPlugin) {
    const std::string path =
        plugins.add_file("openglessl", "lib" + std::string(NEWEST) + ".so", "a text");
    run_out_of_memory({"",
                       "Couldn't load library at " + path + "\nLibrary load error: " + path +
                           ": file too short\n",
                       ""});
}

TEST_F(MemoryRunsOutInitialising, APluginThatLacksAFunction) {
    const std::string path = plugins.add_driver("openglessl", NEWEST, gles_plugin(),
                                                "fake_plugin_without_release_outputs");
    run_out_of_memory({"", "Library at " + path + " isn't implemented correctly\n", ""});
}

TEST_F(MemoryRunsOutInitialising, AnotherInterfaceVersion) {
    const std::string path = plugins.add_driver(
        "openglessl", NEWEST, gles_plugin().api_version(4000000000, 4000000001, 4000000002));
    run_out_of_memory({"",
                       "Library at " + path +
                           " has version 4000000000.4000000001.4000000002.\n"
                           "This compiler manager supports library version v1.x.x only. Please "
                           "upgrade to a later compiler manager version.\n",
                       ""});
}

TEST_F(MemoryRunsOutInitialising, NoCapabilitiesWhenOpened) {
    Fake_plugin plugin;
    const std::string path = plugins.add_driver("openglessl", NEWEST, plugin.record().result(4));
    scenario.keeps_records = true; // a call that fails gives none
    run_out_of_memory({"", "Failed to get capabilities for library " + path + ".\n", ""});
}

TEST_F(MemoryRunsOutInitialising, FlexibleVersionsThatAreRefused) {
    Fake_plugin plugin = gles_plugin().pair("flexible_version", "1.2");
    plugin.pair("flexible_version", "4000000000.4000000001.4000000002");
    const std::string path = plugins.add_driver("openglessl", NEWEST, plugin);
    run_out_of_memory(
        {"",
         "Invalid or malformed flexible version specified for library " + path +
             ".\nVersion specified: 1.2\nLibrary at " + path +
             " uses flexible version 4000000000.4000000001.4000000002.\n"
             "This compiler manager supports flexible versions v1.x.x, v2.x.x and v3.x.x only. "
             "Please upgrade to a later compiler manager version.\n",
         ""});
}

TEST_F(MemoryRunsOutInitialising, NoCapabilitiesWhenListed) {
    Fake_plugin plugin = gles_plugin();
    plugins.add_driver("openglessl", NEWEST, plugin);
    const std::string path = plugins.add_driver("opencl", MIDDLE, plugin.record(2).result(4));
    plugins.add_driver("openglessl", OLDEST, gles_plugin());
    scenario.keeps_records = true; // a call that fails gives none
    run_out_of_memory(
        {gles_compiler(NEWEST), "Could not get capabilities of library at " + path + ".\n", ""});
}

TEST_F(MemoryRunsOutInitialising, NoFlexibleVersionWhenListed) {
    Fake_plugin plugin = gles_plugin();
    plugins.add_driver("openglessl", NEWEST, plugin);
    plugins.add_driver("opencl", OLDEST, plugin.record(2).pair("compiler_type", "opencl"));
    // Deliberate, see Catalogue.DoesNotHandBackTheRecordWithoutAValidFlexibleVersion.
    scenario.keeps_records = true;
    run_out_of_memory({gles_compiler(NEWEST),
                       "Driver 'Vexa-K300_r1p0-00rel0' doesn't report a flexible version string.\n",
                       ""});
}

TEST_F(MemoryRunsOutInitialising, NoValidFlexibleVersionWhenListed) {
    Fake_plugin plugin = gles_plugin();
    plugins.add_driver("openglessl", NEWEST, plugin);
    const std::string version(600, 'x');
    plugins.add_driver("opencl", OLDEST,
                       plugin.record(2).pair("flexible_version", version.c_str()));
    scenario.keeps_records = true; // as above
    run_out_of_memory({gles_compiler(NEWEST),
                       "Driver 'Vexa-K300_r1p0-00rel0' doesn't report a valid flexible version "
                       "string: " +
                           version + "\n",
                       ""});
}

TEST_F(MemoryRunsOutInitialising, ALanguageVersionThatIsNoNumber) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.add_driver("openglessl", OLDEST, gles_plugin("none"));
    run_out_of_memory({"not initialised", "", "stoi"});
}

TEST_F(MemoryRunsOutInitialising, ALanguageVersionThatIsTooLarge) {
    plugins.add_driver("opencl", NEWEST, opencl_plugin("2147483648"));
    run_out_of_memory({"not initialised", "", "stoi"});
}

// The earlier catalogue stays: nothing is lost before the new one stands. The
// last plug-in fails when all else goes well, as a second catalogue would leave
// the first one in memory for good.
TEST_F(MemoryRunsOutInitialising, ASecondTime) {
    Plugin_directory first;
    first.add_driver("opencl", MIDDLE, opencl_plugin());
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.add_driver("openglessl", OLDEST, gles_plugin("none"));
    scenario.before = [&] { EXPECT_EQ(initialise(first.root()), ""); };
    scenario.result = [] { return catalogue(); };
    scenario.after_throw = [] { EXPECT_EQ(catalogue(), opencl_compiler(MIDDLE)); };
    run_out_of_memory({opencl_compiler(MIDDLE), "", "stoi"});
}

// Exemption: no exception leaves the reading of a driver's name, and so memory
// that runs out there makes an unknown name of it. The plug-in is used.
class MemoryRunsOutReadingANameWith : public MemoryRunsOutInitialising {
protected:
    void expect_reading(const std::string& driver, const std::string& reason = "") {
        const auto error = [&](const std::string& text) {
            return "Driver name parse error: \"" + driver +
                   "\" has an unknown name format: " + text + "\n";
        };
        plugins.add_driver("openglessl", driver, gles_plugin());
        const Outcome whole = {gles_compiler(driver), reason.empty() ? "" : error(reason), ""};
        scenario.after_coping = [&](const Outcome& outcome) {
            const bool unknown = outcome.err != whole.err;
            expect_equal(outcome,
                         {whole.result, unknown ? error("std::bad_alloc") : whole.err, ""});
        };
        run_out_of_memory(whole);
    }
};

TEST_F(MemoryRunsOutReadingANameWith, LongNumbers) {
    expect_reading("Vexa-K300_r00000000000000000005p0-06rel0");
}

TEST_F(MemoryRunsOutReadingANameWith, AnotherPrefix) {
    expect_reading("other", "Name does not begin with \"Vexa-\"");
}

TEST_F(MemoryRunsOutReadingANameWith, NoRevision) {
    expect_reading("Vexa-K300-06", "Could not find revision delimiter \"_r\"");
}

TEST_F(MemoryRunsOutReadingANameWith, AnotherCore) {
    expect_reading("Vexa-K999_r1p0-00rel0", "Unknown core name");
}

TEST_F(MemoryRunsOutReadingANameWith, NoPatch) {
    expect_reading("Vexa-K300_r1", "Could not find patch delimiter \"p\"");
}

TEST_F(MemoryRunsOutReadingANameWith, NoVersion) {
    expect_reading("Vexa-K300_r1p0", "Could not find version delimiter \"-\"");
}

TEST_F(MemoryRunsOutReadingANameWith, NoRelease) {
    expect_reading("Vexa-K300_r1p0-00", "Could not find release delimiter \"rel\"");
}

TEST_F(MemoryRunsOutReadingANameWith, NoNumber) {
    expect_reading("Vexa-K300_rxp0-00rel0", "stoi");
}

TEST_F(MemoryRunsOutReadingANameWith, ANumberThatIsTooLarge) {
    expect_reading("Vexa-K300_r1p0-00rel99999999999", "stoi");
}

} // namespace
