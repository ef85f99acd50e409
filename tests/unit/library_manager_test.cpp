// SPDX-License-Identifier: MIT
#include "vexacm_library_manager.hpp"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "captured_stderr.hpp"
#include "loaded_library.hpp"
#include "plugin_directory.hpp"
#include "texts.hpp"
#include "vexacm_compiler_manager.hpp"

namespace fs = std::filesystem;

namespace {

using Manager = VexaCM::Vexacm_library_manager;
using Texts = std::vector<std::string>;

// Copies would close the plug-ins in another order.
static_assert(!std::is_copy_constructible_v<Manager> && !std::is_copy_assignable_v<Manager>);
static_assert(!std::is_copy_constructible_v<VexaCM::Vexacm_compiler_manager> &&
              !std::is_copy_assignable_v<VexaCM::Vexacm_compiler_manager>);

const std::string NO_SUCH_DIRECTORY = "/no/such/directory";

class LibraryManager : public testing::Test {
protected:
    void add(const std::string& api, const std::string& driver) {
        plugins.add_driver(api, driver, Fake_plugin::of_type(api));
    }

    std::unique_ptr<Manager> manager_of(const std::string& root) {
        Captured_stderr captured;
        auto manager = std::make_unique<Manager>(root);
        err = captured.take();
        return manager;
    }

    // The order of the plug-ins under the root.
    Texts sorted_paths() {
        Texts paths;
        for (const auto& library : manager_of(plugins.root())->get_all_libraries())
            paths.push_back(library->get_library_path());
        return paths;
    }

    // The order in which they are found.
    Texts found_paths() const {
        Texts paths;
        for (const char* api : {"openglessl", "opencl"})
            for (const std::string& name : plugins.listed(api))
                paths.push_back(plugins.path(api, name));
        return paths;
    }

    std::string path(const std::string& api, const std::string& driver) const {
        return plugins.path(api, "lib" + driver + ".so");
    }

    Plugin_directory plugins;
    std::string err;
};

TEST_F(LibraryManager, AddsASeparatorUnlessThereIsOne) {
    const auto manager = manager_of(plugins.root());
    const char* const cases[][2] = {
        {"", "/"},    {"/", "/"},      {"//", "//"}, {"a", "a/"},
        {"a/", "a/"}, {"a/b", "a/b/"}, {".", "./"},
    };
    for (const auto& expected : cases) {
        std::string separated = expected[0];
        manager->add_path_separator(&separated);
        EXPECT_EQ(separated, expected[1]);
    }
}

TEST_F(LibraryManager, DirectoryThenEveryNameWithDotSoIsAppended) {
    const auto manager = manager_of(plugins.root());
    const Texts candidates = {"libx.so", "libx.so.1", "a.sox", ".so", "..so.", "notes.so.txt"};
    for (const std::string& name : candidates)
        plugins.add_file("opencl", name, "");
    for (const char* name : {"readme.txt", "so", "xso", "x.s.o", "x.SO", "x.s", ".s.o", "so."})
        plugins.add_file("opencl", name, "");
    // No test of what kind of file it is.
    fs::create_directory(plugins.path("opencl", "directory.so"));
    fs::create_symlink("nowhere", plugins.path("opencl", "dangling.so"));

    Texts paths = {"kept"};
    const std::string directory = plugins.path("opencl");
    EXPECT_EQ(stderr_of([&] { manager->get_libraries_from_directory(directory, &paths); }), "");
    Texts expected = {"kept"};
    for (const std::string& name : plugins.listed("opencl"))
        expected.push_back(directory + "/" + name);
    EXPECT_EQ(expected.size(), 1 + candidates.size() + 2);
    EXPECT_EQ(paths, expected);

    paths = {"kept"};
    EXPECT_EQ(stderr_of([&] { manager->get_libraries_from_directory(directory + "/", &paths); }),
              "");
    EXPECT_EQ(paths, expected);
}

TEST_F(LibraryManager, DirectoryThatCannotBeOpenedThenOneLineAndNothingIsAppended) {
    const auto manager = manager_of(plugins.root());
    plugins.add_file("opencl", "file.so", "");
    for (const std::string& directory :
         {NO_SUCH_DIRECTORY, NO_SUCH_DIRECTORY + "/", std::string(),
          plugins.path("opencl", "file.so"), std::string(10000, 'x')}) {
        Texts paths = {"kept"};
        EXPECT_EQ(stderr_of([&] { manager->get_libraries_from_directory(directory, &paths); }),
                  "Unable to open library directory " + directory + "\n");
        EXPECT_EQ(paths, Texts{"kept"});
    }
}

TEST_F(LibraryManager, RootThenOpenglesslComesBeforeOpencl) {
    const auto manager = manager_of(plugins.root());
    for (const char* api : {"opencl", "openglessl"})
        for (const char* name : {"b.so", "a.so", "c.so", "none"})
            plugins.add_file(api, name, "");
    fs::create_directory(plugins.path("vulkan"));
    plugins.add_file("vulkan", "d.so", "");
    plugins.add_file("", "e.so", "");

    Texts expected = {"kept"};
    for (const std::string& found : found_paths())
        expected.push_back(found);
    for (const char* ending : {"", "/"}) {
        Texts paths = {"kept"};
        EXPECT_EQ(stderr_of([&] { manager->get_library_paths(plugins.root() + ending, &paths); }),
                  "");
        EXPECT_EQ(paths, expected);
    }
    EXPECT_EQ(expected.size(), 7U);
}

TEST_F(LibraryManager, RootThatIsMissingThenALineForEachSubdirectory) {
    const auto manager = manager_of(plugins.root());
    const char* const cases[][2] = {{"/no/such/root", "/no/such/root/"},
                                    {"/no/such/root/", "/no/such/root/"},
                                    {"/no/such/root//", "/no/such/root//"},
                                    {"", "/"}};
    for (const auto& root : cases) {
        Texts paths;
        EXPECT_EQ(stderr_of([&] { manager->get_library_paths(root[0], &paths); }),
                  "Unable to open library directory " + std::string(root[1]) + "openglessl\n" +
                      "Unable to open library directory " + root[1] + "opencl\n");
        EXPECT_EQ(paths, Texts());
        EXPECT_TRUE(manager_of(root[0])->get_all_libraries().empty());
    }
}

TEST_F(LibraryManager, OneSubdirectoryIsMissingThenTheOtherIsStillLoaded) {
    add("openglessl", "Vexa-K300_r1p0-00rel0");
    add("opencl", "Vexa-K300_r2p0-00rel0");
    for (const char* missing : {"openglessl", "opencl"}) {
        const std::string other = missing == std::string("opencl") ? "openglessl" : "opencl";
        const std::string elsewhere = plugins.path("elsewhere");
        fs::rename(plugins.path(missing), elsewhere);
        const Texts paths = sorted_paths();
        EXPECT_EQ(err, "Unable to open library directory " + plugins.path(missing) + "\n");
        ASSERT_EQ(paths.size(), 1U);
        EXPECT_EQ(fs::path(paths[0]).parent_path(), plugins.path(other));
        fs::rename(elsewhere, plugins.path(missing));
    }
}

TEST_F(LibraryManager, NothingToLoadThenEmptyInSilence) {
    plugins.add_file("opencl", "readme.txt", "");
    EXPECT_EQ(sorted_paths(), Texts());
    EXPECT_EQ(err, "");
}

TEST_F(LibraryManager, CandidatesThatDoNotLoadThenDroppedAndClosed) {
    add("openglessl", DRIVER);
    const std::string text = plugins.add_file("opencl", "notes.so.txt", "text");
    EXPECT_EQ(sorted_paths(), Texts{path("openglessl", DRIVER)});
    EXPECT_EQ(err,
              open_error(text) + driver_name_error("notes.", "Name does not begin with \"Vexa-\""));
    plugins.take_log();

    fs::remove(text);
    const std::string refused = plugins.add_driver(
        "opencl", "Vexa-K300_r9p9-09rel9",
        Fake_plugin::of_type("opencl").api_version(0, 0, 1).say_on_unload("closed"));
    EXPECT_EQ(sorted_paths(), Texts{path("openglessl", DRIVER)});
    EXPECT_EQ(err, "Library at " + refused +
                       " has version 0.0.1.\nThis compiler manager supports library version v1.x.x "
                       "only. Please upgrade to a later compiler manager version.\nclosed\n");
    EXPECT_EQ(
        plugins.take_log(),
        log_of("openglessl/" + DRIVER_FILE,
               {"load", "get_api_version", "get_capabilities", "release_capabilities"}) +
            log_of("opencl/libVexa-K300_r9p9-09rel9.so", {"load", "get_api_version", "unload"}) +
            log_of("openglessl/" + DRIVER_FILE, {"unload"}));
}

TEST_F(LibraryManager, LoadsInTheOrderInWhichTheyAreFound) {
    for (const char* api : {"openglessl", "opencl"})
        for (const char* driver : {"Vexa-K300_r5p0-00rel0", "Vexa-200_r5p0-00rel0",
                                   "Vexa-K300_r4p0-00rel0", "Vexa-K300_r6p0-00rel0"})
            plugins.add_driver(api, driver,
                               Fake_plugin::of_type(api).say_on_load(path(api, driver)));
    std::string expected;
    for (const std::string& found : found_paths())
        expected += found + "\n";
    EXPECT_EQ(sorted_paths().size(), 8U);
    EXPECT_EQ(err, expected);
}

TEST_F(LibraryManager, NewestDriverComesFirstAndUnknownOnesLast) {
    // Each differs from the next in one number, or lacks one.
    const Texts drivers = {
        "Vexa-K300_r10p0-00rel0", "Vexa-K300_r5p1-00rel0", "Vexa-K300_r5p0-06rel10",
        "Vexa-K300_r5p0-06rel9",  "Vexa-K300_r5p0-5rel9",  "Vexa-K300_r5p0-05rel",
        "Vexa-K300_r5p0-06",      "Vexa-K300_r5",          "Vexa-200_r11p0-00rel0",
        "Vexa-200_r5p0-00rel0",   "Vexa-K460_r12p0-00rel0"};
    Texts expected;
    for (const std::string& driver : drivers)
        expected.push_back(path("openglessl", driver));
    for (std::size_t i = 0; i < drivers.size(); ++i)
        add("openglessl", drivers[i * 7 % drivers.size()]);
    EXPECT_EQ(sorted_paths(), expected);
}

TEST_F(LibraryManager, OneDriverInBothSubdirectoriesThenOpenclComesFirst) {
    add("openglessl", "Vexa-K300_r4p0-00rel0");
    add("openglessl", "Vexa-K300_r5p0-00rel0");
    add("opencl", "Vexa-K300_r4p0-00rel0");
    add("opencl", "Vexa-K300_r5p0-00rel0");
    EXPECT_EQ(sorted_paths(), (Texts{path("opencl", "Vexa-K300_r5p0-00rel0"),
                                     path("openglessl", "Vexa-K300_r5p0-00rel0"),
                                     path("opencl", "Vexa-K300_r4p0-00rel0"),
                                     path("openglessl", "Vexa-K300_r4p0-00rel0")}));
    EXPECT_EQ(err, "");
}

TEST_F(LibraryManager, EqualNamesEndUpInReverseOrder) {
    // Names of different text whose numbers are the same.
    for (std::size_t i = 0; i < 24; ++i)
        for (const char* api : {"openglessl", "opencl"})
            add(api, "Vexa-K300_r5p0-06rel" + std::string(1 + i, '0'));
    Texts expected = found_paths();
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(expected.size(), 48U);
    EXPECT_EQ(sorted_paths(), expected);
    EXPECT_EQ(err, "");
}

TEST_F(LibraryManager, EqualNamesAmongOthersThenEachGroupInReverseOrder) {
    Random_texts random;
    const auto number = [&](std::size_t limit) {
        return std::string(random.below(3), '0') + std::to_string(random.below(limit));
    };
    for (int i = 0; i < 60; ++i) {
        // Not evaluated as arguments, whose order is open.
        std::string name = random.below(2) ? "Vexa-K300_r" : "Vexa-200_r";
        name += number(2);
        name += "p" + number(2);
        name += "-" + number(2);
        name += "rel" + number(3);
        add(random.below(2) ? "opencl" : "openglessl", name);
    }
    add("opencl", "unknown-1");
    add("openglessl", "unknown-2");
    add("opencl", "unknown-3");

    Texts found = found_paths();
    ASSERT_GT(found.size(), 40U);
    // Put each before the first one that is not greater.
    std::vector<std::shared_ptr<Library>> expected;
    for (const std::string& found_path : found) {
        const auto library = Loaded_library(found_path).library;
        auto place = expected.begin();
        while (place != expected.end() &&
               !library->get_parsed_name().before((*place)->get_parsed_name()))
            ++place;
        expected.insert(place, library);
    }
    Texts expected_paths;
    for (const auto& library : expected)
        expected_paths.push_back(library->get_library_path());
    EXPECT_EQ(sorted_paths(), expected_paths);
}

TEST_F(LibraryManager, SharesItsLibrariesWhichOutliveIt) {
    add("opencl", DRIVER);
    auto manager = manager_of(plugins.root());
    auto libraries = manager->get_all_libraries();
    const auto again = manager->get_all_libraries();
    ASSERT_EQ(libraries.size(), 1U);
    EXPECT_EQ(libraries, again);
    EXPECT_EQ(libraries[0], manager->get_library(DRIVER, "opencl"));
    libraries.clear();
    EXPECT_EQ(manager->get_all_libraries(), again);

    plugins.take_log();
    manager.reset();
    EXPECT_EQ(plugins.take_log(), "");
    EXPECT_EQ(again[0].use_count(), 1);
    EXPECT_TRUE(again[0]->is_initialized());
}

TEST_F(LibraryManager, ManagerAloneHoldsAPluginThenItClosesWithIt) {
    add("opencl", DRIVER);
    auto manager = manager_of(plugins.root());
    plugins.take_log();
    manager.reset();
    EXPECT_EQ(plugins.take_log(), log_of("opencl/" + DRIVER_FILE, {"unload"}));
}

class LibraryLookup : public LibraryManager {
protected:
    std::string found(const std::string& driver, const std::string& api) const {
        const auto library = manager->get_library(driver, api);
        return library ? library->get_library_path() : "none";
    }

    void make_manager() { manager = manager_of(plugins.root()); }

    std::unique_ptr<Manager> manager;
};

TEST_F(LibraryLookup, DriverAndSubdirectoryThenThatPlugin) {
    add("openglessl", "Vexa-K300_r5p0-00rel0");
    add("opencl", "Vexa-K300_r5p0-00rel0");
    add("openglessl", "Vexa-K300_r4p0-00rel0");
    make_manager();
    const std::string r5 = "Vexa-K300_r5p0-00rel0";
    EXPECT_EQ(found(r5, "opencl"), path("opencl", r5));
    EXPECT_EQ(found(r5, "openglessl"), path("openglessl", r5));
    EXPECT_EQ(found("Vexa-K300_r4p0-00rel0", "openglessl"),
              path("openglessl", "Vexa-K300_r4p0-00rel0"));
    EXPECT_EQ(found("Vexa-K300_r4p0-00rel0", "opencl"), "none");
}

TEST_F(LibraryLookup, NameMustBeTheSameToTheLetter) {
    add("opencl", "Vexa-K300_r5p0-00rel0");
    make_manager();
    for (const char* name :
         {"", "Vexa-K300", "Vexa-K300_r5p0-00rel", "Vexa-K300_r5p0-00rel00", "Vexa-K300_r5p0-0rel0",
          "vexa-K300_r5p0-00rel0", "libVexa-K300_r5p0-00rel0.so"})
        EXPECT_EQ(found(name, "opencl"), "none") << name;
}

TEST_F(LibraryLookup, ApiIsAnyPartOfThePathAndTheFirstInOrderIsTaken) {
    const std::string r5 = "Vexa-K300_r5p0-00rel0";
    add("openglessl", r5);
    add("opencl", r5);
    make_manager();
    // Of equals, the OpenCL one stands first.
    EXPECT_EQ(found(r5, ""), path("opencl", r5));
    EXPECT_EQ(found(r5, "open"), path("opencl", r5));
    EXPECT_EQ(found(r5, plugins.root()), path("opencl", r5));
    EXPECT_EQ(found(r5, "/openglessl/lib"), path("openglessl", r5));
    EXPECT_EQ(found(r5, path("openglessl", r5)), path("openglessl", r5));
    EXPECT_EQ(found(r5, "OPENCL"), "none");
    EXPECT_EQ(found(r5, path("opencl", r5) + "/"), "none");
}

TEST_F(LibraryLookup, NoPluginsThenNone) {
    make_manager();
    EXPECT_EQ(manager->get_library("", ""), nullptr);
}

} // namespace
