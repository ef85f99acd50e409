// SPDX-License-Identifier: MIT
#include <sys/wait.h>
#include <unistd.h>

#include "api_test.hpp"

namespace {

// What plug-ins see from their opening to their end.
using Life = Api_test;

const std::string FRAGMENT =
    compile_call({"shader_type", "fragment", "compiler_type", "openglessl"}, "void main() {}");
const std::string KERNEL = compile_call(
    {"shader_type", "kernel", "kernel_name", "k", "compiler_type", "opencl"}, "void main() {}");

TEST_F(Life, OfOnePlugin) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    EXPECT_EQ(stderr_of([&] {
                  vexacm_initialize_libraries(plugins.root().c_str());
                  for (int i = 0; i < 2; ++i) {
                      Outputs outputs;
                      outputs.compile(Request());
                  }
                  catalogue();
                  vexacm_get_extensions(0);
                  vexacm_release_libraries();
              }),
              "");
    EXPECT_EQ(plugins.take_log(),
              calls_when_opened("openglessl", NEWEST) + calls_when_listed("openglessl", NEWEST) +
                  calls("openglessl", NEWEST,
                        {FRAGMENT, "release_outputs", FRAGMENT, "release_outputs", "unload"}));
}

TEST_F(Life, OfSeveralPlugins) {
    for (const char* const driver : {MIDDLE, OLDEST, NEWEST}) {
        plugins.add_driver("openglessl", driver, gles_plugin().core("k58x", "r1p0_00rel0"));
        plugins.add_driver("opencl", driver, opencl_plugin());
    }
    EXPECT_EQ(initialise(), "");

    // Opened in the order of the files, listed in that of the catalogue.
    std::string expected;
    for (const char* const api : {"openglessl", "opencl"})
        for (const std::string& name : plugins.listed(api))
            expected += calls_when_opened(api, name.substr(3, name.size() - 6));
    for (const char* const driver : {NEWEST, MIDDLE, OLDEST})
        for (const char* const api : {"opencl", "openglessl"})
            expected += calls_when_listed(api, driver);
    EXPECT_EQ(plugins.take_log(), expected);

    // Each compiler calls its own plug-in.
    expected.clear();
    unsigned int id = 0;
    for (const char* const driver : {NEWEST, MIDDLE, OLDEST}) {
        Outputs outputs;
        EXPECT_TRUE(outputs.compile(Request("kernel").kernels({"k"}), id));
        expected += calls("opencl", driver, {KERNEL, "release_outputs"});
        EXPECT_TRUE(outputs.compile(Request(), id + 2));
        expected += calls("openglessl", driver, {FRAGMENT, "release_outputs"});
        id += 3;
    }
    EXPECT_EQ(plugins.take_log(), expected);

    // Closed in the order of the catalogue.
    EXPECT_EQ(stderr_of([] { vexacm_release_libraries(); }), "");
    expected.clear();
    for (const char* const driver : {NEWEST, MIDDLE, OLDEST})
        for (const char* const api : {"opencl", "openglessl"})
            expected += calls(api, driver, {"unload"});
    EXPECT_EQ(plugins.take_log(), expected);
}

TEST_F(Life, WhatPluginsSayStandsWhereItWasSaid) {
    Fake_plugin plugin = gles_plugin("310", nullptr);
    plugin.say("first record").pair("foo", "bar");
    plugin.record(2).say("second record").pair("foo", "bar").pair("flexible_version", "1.0.0");
    plugin.pair("compiler_type", "openglessl").core("k46x", "r0p0_00rel0");
    plugin.outputs("").say("compiling");
    plugin.say_on_load("loaded").say_on_unload("unloaded");
    plugins.add_driver("openglessl", NEWEST, plugin);
    EXPECT_EQ(initialise(), "loaded\nfirst record\nsecond record\n"
                            "Unknown flexible capability. Key: foo, Value: bar\n");
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] {
                  EXPECT_TRUE(outputs.compile(Request()));
                  EXPECT_FALSE(outputs.compile(Request("kernel")));
                  EXPECT_TRUE(outputs.compile(Request()));
              }),
              "compiling\nCompiler Manager Error: Only OpenCL compilers can compile kernels.\n"
              "compiling\n");
    outputs.release();
    EXPECT_EQ(stderr_of([] { vexacm_release_libraries(); }), "unloaded\n");
}

TEST_F(Life, APluginWithoutCompilersEndsWithTheInitialisation) {
    plugins.add_driver("openglessl", NEWEST, Fake_plugin::of_type("openglessl"));
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(plugins.take_log(), calls_when_opened("openglessl", NEWEST) +
                                      calls_when_listed("openglessl", NEWEST) +
                                      calls("openglessl", NEWEST, {"unload"}));
    EXPECT_EQ(stderr_of([] { vexacm_release_libraries(); }), "");
    EXPECT_EQ(plugins.take_log(), "");
}

TEST_F(Life, APluginStaysOpenForASingleCompiler) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("K350", "r0").core("k46x", "r0").core("K370", "r0");
    plugins.add_driver("openglessl", NEWEST, plugin);
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(lines_of(plugins.take_log(), "unload"), "");
    vexacm_release_libraries();
    EXPECT_EQ(plugins.take_log(), calls("openglessl", NEWEST, {"unload"}));
}

TEST_F(Life, BeginsAnewAfterTheRelease) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    std::string round = calls_when_opened("openglessl", NEWEST) +
                        calls_when_listed("openglessl", NEWEST) +
                        calls("openglessl", NEWEST, {"unload"});
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(initialise(), "");
        EXPECT_EQ(find_compilers().size(), 1u);
        EXPECT_EQ(stderr_of([] { vexacm_release_libraries(); }), "");
        EXPECT_EQ(plugins.take_log(), round);
    }
}

TEST_F(Life, TheNextCatalogueSeesWhatChangedMeanwhile) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin("310"));
    EXPECT_EQ(initialise(), "");
    vexacm_release_libraries();
    plugins.add_driver("openglessl", NEWEST, gles_plugin("300"));
    plugins.add_driver("opencl", OLDEST, opencl_plugin());
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(), "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 300\n"
                           "Vexa-K300_r1p0-00rel0 Vexa-K460 r0p0_00rel0 opencl 200\n");
}

TEST_F(Life, TheCatalogueDoesNotSeeWhatChangesMeanwhile) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    EXPECT_EQ(initialise(), "");
    const std::string before = catalogue();
    plugins.add_driver("openglessl", OLDEST, gles_plugin());
    EXPECT_EQ(catalogue(), before);
}

TEST_F(Life, GoesOnInAForkedProcess) {
    Fake_plugin plugin = gles_plugin("310", nullptr);
    plugin.outputs("").b("compiled");
    plugins.add_driver("openglessl", NEWEST, plugin);
    EXPECT_EQ(initialise(), "");
    const std::string listed = catalogue();
    plugins.take_log();

    const pid_t child = fork();
    if (child == 0) {
        bool good = catalogue() == listed;
        {
            Outputs outputs;
            good = good && outputs.compile(Request()) && outputs.text() == "b(compiled)";
            good = good && std::string(vexacm_get_extensions(0)) != "";
        }
        vexacm_release_libraries();
        // No exit handlers: they are the parent's.
        _exit(good ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(lines_of(plugins.take_log(), "unload"), calls("openglessl", NEWEST, {"unload"}));

    // Nothing of it happened here: the extensions are still to be probed.
    EXPECT_EQ(catalogue(), listed);
    EXPECT_NE(std::string(vexacm_get_extensions(0)), "");
    EXPECT_NE(lines_of(plugins.take_log(), "#extension"), "");
    vexacm_release_libraries();
    EXPECT_EQ(plugins.take_log(), calls("openglessl", NEWEST, {"unload"}));
}

} // namespace
