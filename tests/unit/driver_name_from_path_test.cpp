// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "loaded_library.hpp"
#include "plugin_directory.hpp"
#include "texts.hpp"

namespace {

class DriverNameFromPath : public testing::Test {
protected:
    DriverNameFromPath()
        : library(plugins.add_driver("opencl", "Vexa-200_r1p0-00rel0",
                                     Fake_plugin::of_type("opencl"))) {}

    std::string name_of(const std::string& path) {
        err = stderr_of([&] { library.path_to_driver_name(path); });
        return library.get_driver_name();
    }

    Plugin_directory plugins;
    Library library;
    std::string err;
};

TEST_F(DriverNameFromPath, PathOfADriverThenItsNameInNumbersToo) {
    for (const char* path :
         {"/opt/drivers/openglessl/libVexa-K300_r5p0-06rel0.so",
          "openglessl/libVexa-K300_r5p0-06rel0.so", "/libVexa-K300_r5p0-06rel0.so",
          "libVexa-K300_r5p0-06rel0.so", "//opencl//libVexa-K300_r5p0-06rel0.so",
          "./lib.so.d/libVexa-K300_r5p0-06rel0.so"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(name_of(path), "Vexa-K300_r5p0-06rel0");
        EXPECT_EQ(err, "");
        const Library::ParsedDriverName& parsed = library.get_parsed_name();
        EXPECT_EQ(parsed.core_id, 1);
        EXPECT_EQ(parsed.revision, 5);
        EXPECT_EQ(parsed.patch, 0);
        EXPECT_EQ(parsed.version, 6);
        EXPECT_EQ(parsed.release, 0);
    }
    EXPECT_TRUE(library.is_initialized());
}

TEST_F(DriverNameFromPath, NameThatDoesNotParseThenEarlierNumbersAreForgotten) {
    EXPECT_EQ(name_of("dir/libVexa-K300.so"), "Vexa-K300");
    EXPECT_EQ(err, driver_name_error("Vexa-K300", "Could not find revision delimiter \"_r\""));
    EXPECT_EQ(library.get_parsed_name().core_id, -1);
    EXPECT_EQ(library.get_parsed_name().release, -1);
    EXPECT_TRUE(library.is_initialized());
}

TEST_F(DriverNameFromPath, CutsTwoCharactersBeforeTheLastDotSOrO) {
    EXPECT_EQ(name_of("dir/libVexa-K300_r5p0-06rel0.so.1"), "Vexa-K300_r5p0-06rel0.");
    EXPECT_EQ(err, "");
    EXPECT_EQ(library.get_parsed_name().release, 0);

    const struct {
        const char* path;
        const char* name;
    } cases[] = {
        {"libVexa-K300_r5p0-06rel0.so.1.23", "Vexa-K300_r5p0-06rel0.so"},
        {"libVexa-K300_r5p0-06rel0.sox", "Vexa-K300_r5p0-06rel0"},
        {"libVexa-K300_r5p0-06rel0.so_", "Vexa-K300_r5p0-06rel0"},
        {"libVexa-K300_r5p0-06rel0.SO", "Vexa-K300_r5p0-06re"},
        {"libVexa-K300_r5p0-06rel0", "Vexa-K300_r5p0-06rel0"},
        {"libVexa-K300_r5p0-06rel0.s", "Vexa-K300_r5p0-06rel"},
        {"notes.so.txt", "notes."},
        {"readme", "readme"},
        // Nothing is cut where less than two characters stand before it.
        {"", ""},
        {".", "."},
        {"so", "so"},
        {"xs", "xs"},
        {".so", ""},
        {"abo", ""},
        {"abcs", "a"},
    };
    for (const auto& expected : cases) {
        EXPECT_EQ(name_of(expected.path), expected.name) << expected.path;
        if (std::string(expected.name).rfind("Vexa-K300_r5p0-06rel0", 0) != 0) {
            EXPECT_EQ(library.get_parsed_name().release, -1) << expected.path;
        }
    }
}

TEST_F(DriverNameFromPath, DropsEverythingUpToTheFirstLib) {
    const struct {
        const char* path;
        const char* name;
    } cases[] = {
        {"lib.so", ""},
        {"liblib.so", "lib"},
        {"xlibVexa.so", "Vexa"},
        {"Vexalib.so", ""},
        {"LIBVexa.so", "LIBVexa"},
        {"li.so", "li"},
        {"a.lib.so", ""},
        {"lib.d/Vexa.so", "Vexa"},
        // The ending goes first, and may take the "lib" with it.
        {"liblet", "let"},
        {"libs", "l"},
        {"libxs", "li"},
    };
    for (const auto& expected : cases)
        EXPECT_EQ(name_of(expected.path), expected.name) << expected.path;
}

TEST_F(DriverNameFromPath, PathThatEndsInASlashThenItIsKeptWhole) {
    EXPECT_EQ(name_of("/"), "/");
    EXPECT_EQ(name_of("//"), "//");
    EXPECT_EQ(name_of("dir/Vexa/"), "dir/Vexa/");
    EXPECT_EQ(name_of("drv/libVexa.so/"), "Vexa");
    EXPECT_EQ(err, driver_name_error("Vexa", "Name does not begin with \"Vexa-\""));
}

std::string name_in_words(std::string path) {
    std::size_t slash = path.size();
    while (slash > 0 && path[slash - 1] != '/')
        --slash;
    if (slash != path.size())
        path = path.substr(slash);
    for (std::size_t k = path.size(); k-- > 0;)
        if (path[k] == '.' || path[k] == 's' || path[k] == 'o') {
            if (k >= 2)
                path = path.substr(0, k - 2);
            break;
        }
    for (std::size_t k = 0; k < path.size(); ++k)
        if (path.substr(k, 3) == "lib")
            return path.substr(k + 3);
    return path;
}

TEST_F(DriverNameFromPath, AnyPathThenAsTheRulesSay) {
    Differences differences;
    std::string expected_err;
    const std::string err_of_all = stderr_of([&] {
        const Pieces pieces = {"/", ".", "s", "o", "l", "i", "b", "lib", "Vexa"};
        for_each_text(pieces, 5 - LENGTH_CUT, [&](const std::string& path) {
            const std::string expected = name_in_words(path);
            expected_err += driver_name_error(expected, "Name does not begin with \"Vexa-\"");
            library.path_to_driver_name(path);
            if (library.get_driver_name() != expected)
                differences.add(path);
        });
    });
    EXPECT_EQ(differences.found(), "");
    EXPECT_TRUE(err_of_all == expected_err); // too long to be shown
}

} // namespace
