// SPDX-License-Identifier: MIT
#include <stdexcept>

#include "api_test.hpp"

namespace {

// How the language versions that a plug-in reports are read.
using VersionNumber = Api_test;

const char* const NOT_NUMBERS[] = {"", " ", "abc", "x310", "-", "+", "+-1", "--1", "es 310", ".5"};
const char* const NOT_INTS[] = {"2147483648",
                                "-2147483649",
                                "4294967296",
                                "9223372036854775808",
                                "99999999999999999999999999",
                                "-9223372036854775809",
                                " +2147483648 es"};

TEST_F(VersionNumber, NumbersAreReadAsTheStandardLibraryReadsThem) {
    struct Row {
        const char* text;
        unsigned int number;
    };
    const Row rows[] = {
        {"310", 310},
        {"0", 0},
        {"007", 7},
        {" \t\n\v\f\r310", 310},
        {"+310", 310},
        {"310es", 310},
        {"310 ", 310},
        {"3.10", 3},
        {"0x136", 0},
        {"1e3", 1},
        {"2147483647", 2147483647},
        // Kept as unsigned numbers, so that negative ones are very high.
        {"-1", 4294967295},
        {"-2147483648", 2147483648},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        {
            const One_plugin plugin(gles_plugin(row.text));
            EXPECT_EQ(vexacm_get_highest_api_version(0), row.number);
        }
        const One_plugin plugin(opencl_plugin(row.text), "opencl");
        EXPECT_EQ(vexacm_get_highest_api_version(0), row.number);
    }
}

// Expects nothing to be left of a plug-in that made the initialisation throw.
template <class Exception>
void expect_throw_and_close(const Fake_plugin& plugin, const char* api) {
    Plugin_directory plugins;
    plugins.add_driver(api, NEWEST, plugin);
    std::string text;
    const std::string error = stderr_of([&] {
        try {
            vexacm_initialize_libraries(plugins.root().c_str());
        } catch (const Exception& exception) {
            text = exception.what();
        }
    });
    EXPECT_EQ(text, "stoi");
    EXPECT_EQ(error, "");
    EXPECT_EQ(plugins.take_log(), calls_when_opened(api, NEWEST) + calls_when_listed(api, NEWEST) +
                                      calls(api, NEWEST, {"unload"}));
}

TEST_F(VersionNumber, ATextWithoutDigitsThrows) {
    for (const char* const text : NOT_NUMBERS) {
        SCOPED_TRACE(text);
        expect_throw_and_close<std::invalid_argument>(gles_plugin(text), "openglessl");
        expect_throw_and_close<std::invalid_argument>(opencl_plugin(text), "opencl");
    }
    SCOPED_TRACE("null");
    expect_throw_and_close<std::invalid_argument>(gles_plugin(nullptr), "openglessl");
    expect_throw_and_close<std::invalid_argument>(opencl_plugin(nullptr), "opencl");
}

TEST_F(VersionNumber, ANumberThatIsTooLargeThrows) {
    for (const char* const text : NOT_INTS) {
        SCOPED_TRACE(text);
        expect_throw_and_close<std::out_of_range>(gles_plugin(text), "openglessl");
        expect_throw_and_close<std::out_of_range>(opencl_plugin(text), "opencl");
    }
}

TEST_F(VersionNumber, TheFirstBadOneOfSeveralThrows) {
    Fake_plugin out_of_range_first = gles_plugin("2147483648");
    out_of_range_first.pair("openglessl_version", "none");
    expect_throw_and_close<std::out_of_range>(out_of_range_first, "openglessl");
    Fake_plugin behind_good_ones = gles_plugin("300");
    behind_good_ones.pair("openglessl_version", "310").pair("openglessl_version", "none");
    expect_throw_and_close<std::invalid_argument>(behind_good_ones, "openglessl");
}

TEST_F(VersionNumber, ThrowsAlsoForAPluginThatOffersNoCore) {
    Fake_plugin without_cores = Fake_plugin::of_type("openglessl");
    without_cores.pair("openglessl_version", "none");
    expect_throw_and_close<std::invalid_argument>(without_cores, "openglessl");
    without_cores.core("K350", "r0p0_00rel0");
    expect_throw_and_close<std::invalid_argument>(without_cores, "openglessl");
}

TEST_F(VersionNumber, OfALanguageThatIsNotOfferedIsNotRead) {
    Fake_plugin gles = gles_plugin();
    gles.pair("opencl_version", "none").pair("opencl_version", "2147483648");
    {
        const One_plugin plugin(gles);
        EXPECT_EQ(vexacm_get_highest_api_version(0), 320u);
    }
    Fake_plugin opencl = opencl_plugin();
    opencl.pair("openglessl_version", "none");
    {
        const One_plugin plugin(opencl, "opencl");
        EXPECT_EQ(vexacm_get_highest_api_version(0), 200u);
    }
    Fake_plugin neither;
    neither.record().pair("flexible_version", "1.0.0").pair("openglessl_version", "none");
    const One_plugin plugin(neither);
    EXPECT_EQ(catalogue(), "");
}

TEST_F(VersionNumber, OfALaterPluginTakesTheEarlierEntriesAlong) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.add_driver("openglessl", MIDDLE, gles_plugin("none"));
    plugins.add_driver("openglessl", OLDEST, gles_plugin());
    EXPECT_EQ(stderr_of([&] {
                  EXPECT_EQ(initialise_throws<std::invalid_argument>(plugins.root().c_str()),
                            "stoi");
              }),
              "");
    const std::string log = plugins.take_log();
    for (const char* const driver : {NEWEST, MIDDLE})
        EXPECT_EQ(lines_of(log, driver), calls_when_opened("openglessl", driver) +
                                             calls_when_listed("openglessl", driver) +
                                             calls("openglessl", driver, {"unload"}));
    EXPECT_EQ(lines_of(log, OLDEST),
              calls_when_opened("openglessl", OLDEST) + calls("openglessl", OLDEST, {"unload"}));
}

TEST_F(VersionNumber, ThatThrowsClosesEarlierPluginsInTheOrderOfTheCatalogue) {
    plugins.add_driver("openglessl", MIDDLE, gles_plugin());
    plugins.add_driver("openglessl", OLDEST, gles_plugin("none"));
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.add_driver("opencl", MIDDLE, opencl_plugin());
    initialise_throws<std::invalid_argument>(plugins.root().c_str());
    std::string closed = lines_of(plugins.take_log(), " unload");
    // The one that made no entry goes when it likes.
    const std::string without_entry = calls("openglessl", OLDEST, {"unload"});
    closed.erase(closed.find(without_entry), without_entry.size());
    EXPECT_EQ(closed, calls("openglessl", NEWEST, {"unload"}) +
                          calls("opencl", MIDDLE, {"unload"}) +
                          calls("openglessl", MIDDLE, {"unload"}));
}

TEST_F(VersionNumber, ThatThrowsBehindAnotherTypeClosesItsPluginWithTheCatalogue) {
    Fake_plugin both = gles_plugin();
    both.pair("compiler_type", "opencl").pair("opencl_version", "none");
    plugins.add_driver("openglessl", NEWEST, both);
    plugins.add_driver("openglessl", OLDEST, gles_plugin());
    initialise_throws<std::invalid_argument>(plugins.root().c_str());
    EXPECT_EQ(lines_of(plugins.take_log(), " unload"),
              calls("openglessl", OLDEST, {"unload"}) + calls("openglessl", NEWEST, {"unload"}));
}

TEST_F(VersionNumber, ThatThrowsLeavesTheEarlierCatalogue) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    EXPECT_EQ(initialise(), "");
    const char* const driver_name = vexacm_get_driver_name(0);
    const std::string listed = catalogue();

    expect_throw_and_close<std::invalid_argument>(gles_plugin("none"), "openglessl");
    expect_throw_and_close<std::out_of_range>(gles_plugin("2147483648"), "openglessl");

    EXPECT_EQ(vexacm_get_driver_name(0), driver_name);
    EXPECT_STREQ(driver_name, NEWEST);
    EXPECT_EQ(catalogue(), listed);
    plugins.take_log();
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request()));
    outputs.release();
    vexacm_release_libraries();
    EXPECT_EQ(plugins.take_log(),
              calls("openglessl", NEWEST,
                    {compile_call({"shader_type", "fragment", "compiler_type", "openglessl"},
                                  "void main() {}"),
                     "release_outputs", "unload"}));
}

} // namespace
