// SPDX-License-Identifier: MIT
#include <algorithm>

#include "api_test.hpp"

namespace {

// In which order the compilers are numbered.
using CatalogueOrder = Api_test;

// The cores and revisions of all compilers in the order of their IDs.
std::vector<std::string> listed_cores() {
    std::vector<std::string> listed;
    for (const unsigned int id : find_compilers())
        listed.push_back(std::string(vexacm_get_core_name(id)) + " " +
                         vexacm_get_core_revision(id));
    return listed;
}

// Expects the plug-in's cores to be listed in just this order, whatever the
// order in which it reports them. Names are reported as they are shown.
void expect_order(const std::vector<std::string>& ordered) {
    std::vector<std::string> reported = ordered;
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        // Backwards, then by name, then mixed up.
        if (round == 0)
            std::reverse(reported.begin(), reported.end());
        else if (round == 1)
            std::sort(reported.begin(), reported.end());
        else
            for (std::size_t i = 0; i < reported.size(); ++i)
                std::swap(reported[i], reported[(i * 7 + 3) % reported.size()]);
        Fake_plugin plugin = Fake_plugin::of_type("openglessl");
        for (const std::string& core : reported) {
            const std::size_t blank = core.rfind(' ');
            plugin.core(core.substr(0, blank).c_str(), core.substr(blank + 1).c_str());
        }
        const One_plugin one(plugin);
        EXPECT_EQ(listed_cores(), ordered);
    }
}

TEST_F(CatalogueOrder, TheHighestCoreComesFirst) {
    expect_order({
        "Vexa-K999 r1p0_00rel0",
        "Vexa-K9999 r0p0_00rel0", // only three digits are read
        "Vexa-K580 r0p0_00rel0",
        "Vexa-579 r9p9_99rel9", // the K may be missing
        "Vexa-K560 r0p0_00rel0",
        "Vexa-K530 r0p0_00rel0",
        "Vexa-K520 r0p0_00rel0",
        "Vexa-K460 r0p0_00rel0",
        "Vexa-K420 r0p0_00rel0",
        "Vexa-K320 r0p0_00rel0",
        "Vexa-K300 r0p0_00rel0",
        "Vexa-99 r0p0_00rel0",
        "Vexa-K5 r0p0_00rel0",
        "k99x r9p9_99rel9", // no number
        "Vexa-Kx60 r8p0_00rel0",
        "Vexa-k580 r7p0_00rel0",
        "xx r6p0_00rel0",
    });
}

TEST_F(CatalogueOrder, CoreNumbersAreReadFromBehindTheFirstHyphenOrFiveCharacters) {
    expect_order({
        "-K999 r0",
        "A-998 r0",
        "Vexa-K997-K1 r0",
        "Vex-K996 r0",
        "Vexa- 95 r0",
        "VexaxK94 r0",
        "Vexa_93 r0",
        "abcdef996 r1", // "f99" is no number
        "VexaXY-K900 r0",
    });
}

TEST_F(CatalogueOrder, TheHighestRevisionComesFirst) {
    expect_order({
        "Vexa-K460 r9p0_00rel0",     "Vexa-K460 r2p1_05rel3", "Vexa-K460 r2p1_05rel2",
        "Vexa-K460 r2p1_05dev1",     "Vexa-K460 r2p1_04rel9", "Vexa-K460 r2p0_99rel9",
        "Vexa-K460 r1p9_00rel0",
        "Vexa-K460 r1p2_7", // build 7, release 7
        "Vexa-K460 r1p2_6rel9",      "Vexa-K460 r1p1",        "Vexa-K460 xr1p0_01rel0",
        "Vexa-K460 r1p0_00rel1",
        "Vexa-K460 r10p2", // major 1, nothing more
        "Vexa-K460 r0p2_00rel0",
        "Vexa-K460 r0p1-99rel9",     // major 0, minor 1, nothing more
        "Vexa-K460 r0p0_234567",     // six characters are read
        "Vexa-K460 r0p0_1234567",    // build 123456
        "Vexa-K460 r0p0_92345rel0",  // release 9
        "Vexa-K460 r0p0_092345rel1", // release 0
        "Vexa-K460 r0p0_10rel0",     // build 10
        "Vexa-K460 r0p0_9rel9",      // build 9
        "Vexa-K460 r0p0_00rel1",     // release 1
        "Vexa-K460 xxr9p9_99rel9",   // no number
    });
}

TEST_F(CatalogueOrder, CoresComeBeforeRevisions) {
    expect_order({
        "Vexa-K460 r1p0_00rel0",
        "Vexa-K460 r0p1_00rel0",
        "Vexa-K460 r0p0_00rel0",
        "Vexa-K420 r9p9_99rel9",
        "Vexa-K420 r0p0_00rel0",
    });
}

TEST_F(CatalogueOrder, TheNameThatIsShownCounts) {
    // By the short names, none of them would have a number.
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    for (const char* const core :
         {"k30x", "k58x", "k42x", "k53x", "k46x", "k56x", "k32x", "k52x", "k99x"})
        plugin.core(core, "r0");
    const One_plugin one(plugin);
    EXPECT_EQ(listed_cores(),
              (std::vector<std::string>{"Vexa-K580 r0", "Vexa-K560 r0", "Vexa-K530 r0",
                                        "Vexa-K520 r0", "Vexa-K460 r0", "Vexa-K420 r0",
                                        "Vexa-K320 r0", "Vexa-K300 r0", "k99x r0"}));
}

TEST_F(CatalogueOrder, EveryCombinationOfCoreAndRevisionIsOrdered) {
    std::vector<std::string> ordered;
    for (const char* const core : {"Vexa-K580", "Vexa-K460", "Vexa-K300"})
        for (int major = 2; major >= 0; --major)
            for (int minor = 2; minor >= 0; --minor)
                for (const char* const build : {"10", "02", "01"})
                    for (const char* const tag : {"rel2", "dev1", "rel0"})
                        ordered.push_back(std::string(core) + " r" + std::to_string(major) + "p" +
                                          std::to_string(minor) + "_" + build + tag);
    expect_order(ordered);
}

TEST_F(CatalogueOrder, HundredsOfEqualEntriesKeepTheOrderInWhichTheyWereReported) {
    // Equal to the order, told apart by what it does not read.
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    std::vector<std::string> expected;
    for (int i = 0; i < 700; ++i) {
        const std::string revision = "r0p0_00rel0-" + std::to_string(i);
        plugin.core("Vexa-K460", revision.c_str());
        expected.push_back("Vexa-K460 " + revision);
    }
    const One_plugin one(plugin);
    EXPECT_EQ(listed_cores(), expected);
    EXPECT_EQ(find_compilers().size(), 700u);
}

TEST_F(CatalogueOrder, PluginsComeBeforeCores) {
    // Each of the three would stand between the others by its cores.
    Fake_plugin plugin = gles_plugin();
    plugin.core("k58x", "r0p0_00rel0").core("k42x", "r9p0_00rel0");
    plugins.add_driver("openglessl", OLDEST, plugin);
    plugins.add_driver("openglessl", NEWEST, plugin);
    plugins.add_driver("openglessl", MIDDLE, plugin);
    EXPECT_EQ(initialise(), "");
    std::string expected;
    for (const std::string driver : {NEWEST, MIDDLE, OLDEST})
        expected += driver + " Vexa-K580 r0p0_00rel0 openglessl 320\n" + driver +
                    " Vexa-K460 r0p0_00rel0 openglessl 320\n" + driver +
                    " Vexa-K420 r9p0_00rel0 openglessl 310\n";
    EXPECT_EQ(catalogue(), expected);
}

TEST_F(CatalogueOrder, TheNewestDriverComesFirst) {
    const char* const ordered[] = {
        "Vexa-K300_r10p0-00rel0", "Vexa-K300_r5p1-00rel0",  "Vexa-K300_r5p0-06rel1",
        "Vexa-K300_r5p0-06rel0",  "Vexa-K300_r5p0-05rel9",  "Vexa-K300_r5p-3rel0",
        "Vexa-K300_r4p9-99rel99", "Vexa-200_r99p9-99rel99", "Vexa-200_r4p1-01rel2",
    };
    for (const char* const driver : ordered)
        plugins.add_driver("openglessl", driver, gles_plugin());
    EXPECT_EQ(initialise(), "");
    std::string expected;
    for (const std::string driver : ordered)
        expected += driver + " Vexa-K460 r0p0_00rel0 openglessl 320\n";
    EXPECT_EQ(catalogue(), expected);
}

TEST_F(CatalogueOrder, NamesThatAreNoDriversComeBehindThoseWithTheSameBeginning) {
    for (const char* const driver :
         {"other", "Vexa-K300_r5p0-06", "Vexa-K300_r5p0-00rel0", "Vexa-200_r1p0-00rel0",
          "Vexa-K300_rXp0-06rel0", "Vexa-K300_r4p0-00rel0"})
        plugins.add_driver("openglessl", driver, gles_plugin());
    initialise(); // tells of the names in the order of the files
    std::string expected;
    for (const std::string driver :
         {"Vexa-K300_r5p0-00rel0", "Vexa-K300_r5p0-06", "Vexa-K300_r4p0-00rel0",
          "Vexa-K300_rXp0-06rel0", "Vexa-200_r1p0-00rel0", "other"})
        expected += driver + " Vexa-K460 r0p0_00rel0 openglessl 320\n";
    EXPECT_EQ(catalogue(), expected);
}

TEST_F(CatalogueOrder, OfOneDriverTheOpenClPluginComesFirst) {
    for (const char* const driver : {OLDEST, NEWEST}) {
        plugins.add_driver("openglessl", driver, gles_plugin());
        plugins.add_driver("opencl", driver, opencl_plugin());
    }
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(), "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 opencl 200\n"
                           "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 320\n"
                           "Vexa-K300_r1p0-00rel0 Vexa-K460 r0p0_00rel0 opencl 200\n"
                           "Vexa-K300_r1p0-00rel0 Vexa-K460 r0p0_00rel0 openglessl 320\n");
}

TEST_F(CatalogueOrder, EqualDriversComeInTheReverseOfTheirFiles) {
    // The text behind the release is not read; the versions tell them apart.
    for (const char* const version : {"100", "110", "120", "130", "140", "150"})
        plugins.add_driver("openglessl", std::string("Vexa-K300_r5p0-06rel0_") + version,
                           gles_plugin(version));
    EXPECT_EQ(initialise(), "");
    std::vector<std::string> files = plugins.listed("openglessl");
    std::reverse(files.begin(), files.end());
    std::vector<std::string> drivers;
    for (const unsigned int id : find_compilers())
        drivers.push_back("lib" + std::string(vexacm_get_driver_name(id)) + ".so");
    EXPECT_EQ(drivers, files);
}

} // namespace
