// SPDX-License-Identifier: MIT
#include "api_test.hpp"

namespace {

using Catalogue = Api_test;

constexpr const char* K460 = "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 320";

std::string unknown(const std::string& key, const std::string& value) {
    return "Unknown flexible capability. Key: " + key + ", Value: " + value + "\n";
}

// The catalogue of one plug-in, and what its reading writes to standard error.
struct Read_plugin {
    explicit Read_plugin(const Fake_plugin& plugin) {
        Plugin_directory plugins;
        plugins.add_driver("openglessl", NEWEST, plugin);
        error =
            stderr_of([&] { EXPECT_TRUE(vexacm_initialize_libraries(plugins.root().c_str())); });
        compilers = catalogue();
        vexacm_release_libraries();
    }
    std::string error;
    std::string compilers;
};

TEST_F(Catalogue, HoldsOneEntryForEachCompilerTypeAndCore) {
    Fake_plugin plugin = gles_plugin();
    plugin.pair("compiler_type", "opencl").pair("opencl_version", "200");
    plugin.core("k58x", "r0p0_00rel0").core("k42x", "r2p1_05rel3");
    const Read_plugin read(plugin);
    EXPECT_EQ(read.error, "");
    // Equal ones stand in the order in which they were made.
    EXPECT_EQ(read.compilers, "Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0 openglessl 320\n"
                              "Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0 opencl 200\n"
                              "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 320\n"
                              "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 opencl 200\n"
                              "Vexa-K300_r5p0-06rel0 Vexa-K420 r2p1_05rel3 openglessl 310\n"
                              "Vexa-K300_r5p0-06rel0 Vexa-K420 r2p1_05rel3 opencl 200\n");
}

TEST_F(Catalogue, PassesOverCoresThatOccurInABlacklistedName) {
    // Parts of "Vexa-100", "Vexa-K350" and "Vexa-K370", null as the empty text.
    const char* const passed_over[] = {
        "Vexa-100", "Vexa-K350", "Vexa-K370", "100", "10",   "0",   "K350", "K370", "K3",   "K",
        "Vexa-",    "Vexa-K3",   "V",         "-",   "xa-K", "350", "37",   "",     nullptr};
    // No part of one: other cases, more than a listed name, the short names.
    const char* const kept[] = {"vexa-100", "k350",       "VEXA",      "Vexa-K350 ", "Vexa-1000",
                                " ",        "Vexa-K3500", "Vexa-K300", "K36",        "k",
                                "k35x",     "k37x",       "200",       "Vexa-K360"};
    for (const char* const core : passed_over) {
        SCOPED_TRACE(core ? core : "null");
        Fake_plugin plugin = gles_plugin();
        plugin.core(core, "r0p0_00rel0");
        const Read_plugin read(plugin);
        EXPECT_EQ(read.error, "");
        EXPECT_EQ(read.compilers, std::string(K460) + "\n");
    }
    for (const char* const core : kept) {
        SCOPED_TRACE(core);
        Fake_plugin plugin = Fake_plugin::of_type("openglessl");
        plugin.core(core, "r0p0_00rel0");
        const Read_plugin read(plugin);
        EXPECT_EQ(read.error, "");
        EXPECT_EQ(read.compilers,
                  std::string("Vexa-K300_r5p0-06rel0 ") + core + " r0p0_00rel0 openglessl 0\n");
    }
}

TEST_F(Catalogue, ThreeCoresOfWhichOneIsBlacklistedGiveTwoEntries) {
    Fake_plugin plugin = gles_plugin();
    plugin.core("Vexa-K370", "r0p0_00rel0").core("k30x", "r1p0_00rel0");
    EXPECT_EQ(Read_plugin(plugin).compilers,
              std::string(K460) + "\nVexa-K300_r5p0-06rel0 Vexa-K300 r1p0_00rel0 openglessl 310\n");
}

TEST_F(Catalogue, ShowsShortCoreNamesAsDisplayNames) {
    struct Row {
        const char* reported;
        const char* shown;
        unsigned int version; // of a plug-in that reports 320
    };
    const Row rows[] = {
        {"k30x", "Vexa-K300", 310},
        {"k32x", "Vexa-K320", 310},
        {"k42x", "Vexa-K420", 310},
        {"k46x", "Vexa-K460", 320},
        {"k52x", "Vexa-K520", 320},
        {"k53x", "Vexa-K530", 320},
        {"k56x", "Vexa-K560", 320},
        {"k58x", "Vexa-K580", 320},
        {"Vexa-K300", "Vexa-K300", 310},
        {"Vexa-K320", "Vexa-K320", 310},
        {"Vexa-K420", "Vexa-K420", 310},
        {"Vexa-K460", "Vexa-K460", 320},
        {"k99x", "k99x", 320},
        {"K46X", "K46X", 320},
        {"k46", "k46", 320},
        {"k46xx", "k46xx", 320},
        {" k46x", " k46x", 320},
        {"vexa-k300", "vexa-k300", 320},
        {"k35x", "k35x", 320},
        {"k37x", "k37x", 320},
        {"Vexa-K3000", "Vexa-K3000", 320},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.reported);
        Fake_plugin plugin = Fake_plugin::of_type("openglessl");
        plugin.core(row.reported, "r0p0_00rel0").pair("openglessl_version", "320");
        EXPECT_EQ(Read_plugin(plugin).compilers, std::string("Vexa-K300_r5p0-06rel0 ") + row.shown +
                                                     " r0p0_00rel0 openglessl " +
                                                     std::to_string(row.version) + "\n");
    }
}

TEST_F(Catalogue, TakesTheHighestVersionAndCapsItForSomeCores) {
    struct Row {
        const char* api;
        std::vector<const char*> versions;
        unsigned int of_k42x;
        unsigned int of_k46x;
    };
    const Row rows[] = {
        {"openglessl", {}, 0, 0},
        {"openglessl", {"100", "300"}, 300, 300},
        {"openglessl", {"100", "300", "310", "320"}, 310, 320},
        {"openglessl", {"320", "310", "300", "100"}, 310, 320},
        {"openglessl", {"100", "320", "100"}, 310, 320},
        {"openglessl", {"320"}, 310, 320},
        {"openglessl", {"320", "320"}, 310, 320},
        {"openglessl", {"310"}, 310, 310},
        {"openglessl", {"319"}, 319, 319},
        {"openglessl", {"321"}, 321, 321},
        {"openglessl", {"320", "330"}, 330, 330},
        {"openglessl", {"320", "-1"}, 4294967295, 4294967295},
        {"opencl", {}, 0, 0},
        {"opencl", {"320"}, 320, 320},
        {"opencl", {"120", "200", "110"}, 200, 200},
    };
    for (const Row& row : rows) {
        Fake_plugin plugin = Fake_plugin::of_type(row.api);
        plugin.core("k42x", "r0").core("k46x", "r0");
        const bool gles = std::string_view(row.api) == "openglessl";
        // What the other language reports does not count.
        plugin.pair(gles ? "opencl_version" : "openglessl_version", "999");
        for (const char* const version : row.versions)
            plugin.pair(gles ? "openglessl_version" : "opencl_version", version);
        const std::string api = row.api;
        EXPECT_EQ(Read_plugin(plugin).compilers, "Vexa-K300_r5p0-06rel0 Vexa-K460 r0 " + api + " " +
                                                     std::to_string(row.of_k46x) +
                                                     "\nVexa-K300_r5p0-06rel0 Vexa-K420 r0 " + api +
                                                     " " + std::to_string(row.of_k42x) + "\n");
    }
}

TEST_F(Catalogue, ARepeatedCompilerTypeGivesEveryCoreAgain) {
    Fake_plugin plugin = gles_plugin();
    plugin.pair("compiler_type", "openglessl").core("k58x", "r0p0_00rel0");
    const std::string k580 = "Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0 openglessl 320\n";
    EXPECT_EQ(Read_plugin(plugin).compilers, k580 + k580 + K460 + "\n" + K460 + "\n");
}

TEST_F(Catalogue, APluginWithoutACompilerTypeGivesNothingAndTheNextIsRead) {
    Fake_plugin without_type;
    without_type.record().pair("flexible_version", "1.0.0").core("k46x", "r0p0_00rel0");
    plugins.add_driver("openglessl", NEWEST, without_type);
    plugins.add_driver("openglessl", OLDEST, gles_plugin());
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(), "Vexa-K300_r1p0-00rel0 Vexa-K460 r0p0_00rel0 openglessl 320\n");
    // Handed back, and closed because nothing refers to it.
    EXPECT_EQ(lines_of(plugins.take_log(), NEWEST), calls_when_opened("openglessl", NEWEST) +
                                                        calls_when_listed("openglessl", NEWEST) +
                                                        calls("openglessl", NEWEST, {"unload"}));
}

TEST_F(Catalogue, OtherCompilerTypesArePassedOver) {
    for (const char* const type :
         {"OpenGLESSL", "OPENCL", "opencl ", " openglessl", "vulkan", "", "openglesslx", "openc"}) {
        SCOPED_TRACE(type);
        Fake_plugin plugin;
        plugin.record().pair("compiler_type", type).pair("compiler_type", nullptr);
        plugin.pair("compiler_type", "openglessl").pair("openglessl_version", "320");
        plugin.pair("flexible_version", "1.0.0").core("k46x", "r0p0_00rel0");
        const Read_plugin read(plugin);
        EXPECT_EQ(read.error, "");
        EXPECT_EQ(read.compilers, std::string(K460) + "\n");
    }
}

TEST_F(Catalogue, PrerotateIsSupportedWhenOneValueIsExactlyTrue) {
    struct Row {
        std::vector<const char*> values;
        bool supported;
    };
    const Row rows[] = {
        {{}, false},
        {{"true"}, true},
        {{"TRUE"}, false},
        {{"True"}, false},
        {{"1"}, false},
        {{"yes"}, false},
        {{""}, false},
        {{nullptr}, false},
        {{"false"}, false},
        {{" true"}, false},
        {{"true "}, false},
        {{"truer"}, false},
        {{"tru"}, false},
        {{"true", "false"}, true},
        {{"false", "true"}, true},
        {{"1", "0"}, false},
    };
    for (const Row& row : rows) {
        Fake_plugin plugin = gles_plugin();
        for (const char* const value : row.values)
            plugin.pair("prerotate", value);
        const Read_plugin read(plugin);
        EXPECT_EQ(read.error, "");
        EXPECT_EQ(read.compilers, std::string(K460) + (row.supported ? " prerotate\n" : "\n"));
    }
}

TEST_F(Catalogue, BinaryOutputIsSupportedWhenTheRecordSaysExactlyOne) {
    for (const std::uint32_t value : {0u, 1u, 2u, 3u, 0x100u, 0x101u, 0x80000001u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(value);
        Fake_plugin plugin = gles_plugin();
        plugin.binary_output(value);
        const Read_plugin read(plugin);
        EXPECT_EQ(read.error, "");
        EXPECT_EQ(read.compilers, std::string(K460) + (value == 1 ? " binary\n" : "\n"));
    }
}

TEST_F(Catalogue, UnknownKeysAreToldInOrderAndPassedOver) {
    const std::string long_text(5000, 'x');
    Fake_plugin plugin;
    plugin.record().pair("foo", "bar").pair("compiler_type", "openglessl");
    plugin.pair("Compiler_type", "opencl").pair("compiler_type ", "opencl").pair("", "");
    plugin.pair("flexible_version", "1.0.0").pair(nullptr, nullptr).pair("foo", "bar");
    plugin.pair("openglessl_version", "320").pair("opengles_version", "none");
    plugin.pair("openglessl_extension", "GL_X").pair(" prerotate", "true");
    plugin.pair("flexible_versio", "x").pair("%s\n", "\x80 %n").pair(long_text.c_str(), "long");
    plugin.core("k46x", "r0p0_00rel0");
    const Read_plugin read(plugin);
    EXPECT_EQ(read.error, unknown("foo", "bar") + unknown("Compiler_type", "opencl") +
                              unknown("compiler_type ", "opencl") + unknown("", "") +
                              unknown("", "") + unknown("foo", "bar") +
                              unknown("opengles_version", "none") +
                              unknown("openglessl_extension", "GL_X") +
                              unknown(" prerotate", "true") + unknown("flexible_versio", "x") +
                              unknown("%s\n", "\x80 %n") + unknown(long_text, "long"));
    EXPECT_EQ(read.compilers, std::string(K460) + "\n");
}

TEST_F(Catalogue, UndefineAndArchitectureAreIgnored) {
    Fake_plugin plugin = gles_plugin();
    plugin.pair("undefine", "FOO").pair("architecture", "K").pair("undefine", nullptr);
    const Read_plugin read(plugin);
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(read.compilers, std::string(K460) + "\n");
}

TEST_F(Catalogue, AKeyThatLacksItsValueIsIgnored) {
    for (const char* const key :
         {"compiler_type", "openglessl_version", "flexible_version", "prerotate", "foo", ""}) {
        SCOPED_TRACE(key);
        Fake_plugin plugin = gles_plugin();
        plugin.text(key);
        Read_plugin read(plugin);
        EXPECT_EQ(read.error, "");
        EXPECT_EQ(read.compilers, std::string(K460) + "\n");

        // A value lies behind it that does not count any more.
        plugin = gles_plugin();
        plugin.pair(key, "true").num_entries(9);
        read = Read_plugin(plugin);
        EXPECT_EQ(read.error, "");
        EXPECT_EQ(read.compilers, std::string(K460) + "\n");
    }
}

TEST_F(Catalogue, CountsEndTheLists) {
    Fake_plugin plugin = gles_plugin();
    plugin.core("k58x", "r0p0_00rel0").num_cores(1);
    plugin.pair("prerotate", "true").pair("foo", "bar").num_entries(8);
    Read_plugin read(plugin);
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(read.compilers, std::string(K460) + "\n");

    plugin.num_cores(0);
    read = Read_plugin(plugin);
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(read.compilers, "");
}

TEST_F(Catalogue, ANullListOfCoresReadsAsEmpty) {
    Fake_plugin plugin = gles_plugin();
    plugin.null_cores();
    Read_plugin read(plugin);
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(read.compilers, "");
    plugin.num_cores(0xFFFFFFFF);
    read = Read_plugin(plugin);
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(read.compilers, "");
}

TEST_F(Catalogue, ANullRevisionReadsAsTheEmptyText) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k46x", nullptr);
    One_plugin one(plugin);
    EXPECT_EQ(catalogue(), "Vexa-K300_r5p0-06rel0 Vexa-K460  openglessl 0\n");
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request()));
    EXPECT_EQ(one.take_calls(),
              compile_call({"shader_type", "fragment", "compiler_type", "openglessl"},
                           "void main() {}", false, "k46x", "") +
                  "\nrelease_outputs\n");
}

TEST_F(Catalogue, TheSameDriverCoreAndRevisionTwiceAreTwoEntries) {
    Fake_plugin plugin = gles_plugin();
    plugin.core("k46x", "r0p0_00rel0");
    plugins.add_driver("openglessl", NEWEST, plugin);
    plugins.add_driver("opencl", NEWEST, gles_plugin());
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(), std::string(K460) + "\n" + K460 + "\n" + K460 + "\n");
}

TEST_F(Catalogue, TheSubdirectoryDoesNotDecideTheLanguage) {
    plugins.add_driver("opencl", NEWEST, gles_plugin());
    plugins.add_driver("openglessl", OLDEST, opencl_plugin());
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(),
              std::string(K460) + "\nVexa-K300_r1p0-00rel0 Vexa-K460 r0p0_00rel0 opencl 200\n");
}

TEST_F(Catalogue, TheSecondRecordCounts) {
    Fake_plugin plugin = opencl_plugin();
    plugin.record(2).pair("compiler_type", "openglessl").pair("flexible_version", "2.0.0");
    plugin.pair("prerotate", "true").core("k58x", "r1p0_00rel0").binary_output(1);
    const Read_plugin read(plugin);
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(read.compilers,
              "Vexa-K300_r5p0-06rel0 Vexa-K580 r1p0_00rel0 openglessl 0 binary prerotate\n");
}

// Neither the second interface version nor the plug-in's errno.
TEST_F(Catalogue, RecordsArriveZeroedAndWhatNeedNotBeCheckedIsNot) {
    plugins.add_driver("openglessl", NEWEST, Fake_plugin(), "sparse_plugin");
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(), "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 320\n");
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(Request())); }), "");
    EXPECT_TRUE(outputs.is_zeroed());
}

} // namespace
