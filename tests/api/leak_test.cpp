// SPDX-License-Identifier: MIT
#include "api_test.hpp"

// The first manager stays in memory on purpose when the library is initialised
// twice, unreachable. What an initialisation allocates is exempted here and in
// no other program of the tests.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:vexacm_initialize_libraries\n";
}

namespace {

using Initialise = Api_test;

constexpr const char* COMPILER = "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 320\n";
constexpr const char* OTHER_COMPILER = "Vexa-K300_r1p0-00rel0 Vexa-K460 r0p0_00rel0 opencl 200\n";

TEST_F(Initialise, TwiceLeavesTheFirstManagerAlive) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    Plugin_directory others;
    others.add_driver("opencl", OLDEST, opencl_plugin());

    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(), COMPILER);
    const char* const driver_name = vexacm_get_driver_name(0);
    const char* const extensions = vexacm_get_extensions(0);
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request()));
    plugins.take_log();

    EXPECT_EQ(initialise(others.root()), "");
    EXPECT_EQ(catalogue(), OTHER_COMPILER);
    EXPECT_EQ(plugins.take_log(), "");
    EXPECT_STREQ(driver_name, NEWEST);
    EXPECT_STREQ(extensions, "GL_X ");
    outputs.release();
    others.take_log();

    // Only the second is released.
    EXPECT_EQ(stderr_of([] { vexacm_release_libraries(); }), "");
    EXPECT_EQ(others.take_log(), calls("opencl", OLDEST, {"unload"}));
    EXPECT_EQ(plugins.take_log(), "");
    EXPECT_STREQ(driver_name, NEWEST);
    const char* name = "";
    stderr_of([&] { name = vexacm_get_driver_name(0); });
    EXPECT_EQ(name, nullptr);
}

TEST_F(Initialise, TwiceOnOneDirectoryReadsItTwice) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    EXPECT_EQ(initialise(), "");
    plugins.take_log();
    EXPECT_EQ(initialise(), "");
    // The file is open already, and is not loaded again.
    const std::string reading =
        calls("openglessl", NEWEST,
              {"get_api_version", "get_capabilities", "release_capabilities"}) +
        calls_when_listed("openglessl", NEWEST);
    EXPECT_EQ(plugins.take_log(), reading);
    EXPECT_EQ(catalogue(), COMPILER);
    vexacm_release_libraries();
    EXPECT_EQ(plugins.take_log(), "");
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(plugins.take_log(), reading);
    EXPECT_EQ(catalogue(), COMPILER);
}

} // namespace
