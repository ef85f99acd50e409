// SPDX-License-Identifier: MIT
#include <filesystem>
#include <stdexcept>

#include "api_test.hpp"

namespace fs = std::filesystem;

namespace {

using Initialise = Api_test;

// The working directory, put back in the end.
class Working_directory {
public:
    explicit Working_directory(const fs::path& path) : former(fs::current_path()) {
        fs::current_path(path);
    }
    ~Working_directory() { fs::current_path(former); }
    Working_directory(const Working_directory&) = delete;
    Working_directory& operator=(const Working_directory&) = delete;

private:
    fs::path former;
};

std::string cannot_open(const std::string& directory) {
    return "Unable to open library directory " + directory + "\n";
}

constexpr const char* ONE_COMPILER = "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 320\n";

TEST_F(Initialise, WithoutPluginsGivesAnEmptyCatalogue) {
    EXPECT_EQ(initialise(), "");
    unsigned int none = 0;
    unsigned int* ids = &none;
    unsigned int count = 5;
    EXPECT_EQ(stderr_of([&] {
                  vexacm_get_compilers(&ids, &count, nullptr, nullptr, nullptr, nullptr, nullptr,
                                       0);
              }),
              "");
    EXPECT_EQ(count, 0u);
    EXPECT_NE(ids, &none);
    EXPECT_NE(ids, nullptr);
    EXPECT_EQ(stderr_of([&] { vexacm_release_compilers(&ids, count); }), "");
    EXPECT_EQ(ids, nullptr);
}

TEST_F(Initialise, TellsTheManagersVersion) {
    EXPECT_EQ(initialise(), "");
    vexacm_version version = {1, 1, 1};
    EXPECT_EQ(stderr_of([&] { vexacm_get_manager_version(&version); }), "");
    EXPECT_EQ(version.major, 4u);
    EXPECT_EQ(version.minor, 0u);
    EXPECT_EQ(version.patch, 2u);
}

TEST_F(Initialise, AMissingSubdirectoryIsToldAndTheOtherIsRead) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.add_driver("opencl", NEWEST, opencl_plugin());
    plugins.remove("openglessl");
    EXPECT_EQ(initialise(), cannot_open(plugins.path("openglessl")));
    EXPECT_EQ(catalogue(), "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 opencl 200\n");
    vexacm_release_libraries();

    fs::create_directory(plugins.path("openglessl"));
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.remove("opencl");
    EXPECT_EQ(initialise(), cannot_open(plugins.path("opencl")));
    EXPECT_EQ(catalogue(), ONE_COMPILER);
    vexacm_release_libraries();

    plugins.remove("openglessl");
    EXPECT_EQ(initialise(),
              cannot_open(plugins.path("openglessl")) + cannot_open(plugins.path("opencl")));
    EXPECT_EQ(catalogue(), "");
}

TEST_F(Initialise, ASubdirectoryThatIsAFileIsTold) {
    plugins.remove("opencl");
    write_file(plugins.path("opencl"), "");
    EXPECT_EQ(initialise(), cannot_open(plugins.path("opencl")));
}

TEST_F(Initialise, RootsThatHoldNothingAreTold) {
    const Working_directory elsewhere(plugins.root());
    const std::string regular_file = plugins.root() + "/file";
    write_file(regular_file, "");
    struct Row {
        std::string root;
        std::string with_separator;
    };
    const Row rows[] = {
        // Not the working directory, where both subdirectories are.
        {"", "/"},
        {"/", "/"},
        {"missing", "missing/"},
        {"missing/", "missing/"},
        {"missing//", "missing//"},
        {regular_file, regular_file + "/"},
        {plugins.root() + "/missing", plugins.root() + "/missing/"},
        {"\xff \n", "\xff \n/"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.root);
        EXPECT_EQ(initialise(row.root), cannot_open(row.with_separator + "openglessl") +
                                            cannot_open(row.with_separator + "opencl"));
        EXPECT_EQ(catalogue(), "");
        vexacm_release_libraries();
    }
}

TEST_F(Initialise, RootsMayBeSpelledInManyWays) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    const Working_directory elsewhere(plugins.root());
    const std::string name = fs::path(plugins.root()).filename().string();
    for (const std::string& root :
         {plugins.root(), plugins.root() + "/", plugins.root() + "//", std::string("."),
          std::string("./"), "../" + name, "../" + name + "/"}) {
        SCOPED_TRACE(root);
        EXPECT_EQ(initialise(root), "");
        EXPECT_EQ(catalogue(), ONE_COMPILER);
        vexacm_release_libraries();
    }
}

TEST_F(Initialise, PathsInMessagesBeginWithTheRootAsItWasGiven) {
    plugins.add_file("openglessl", "libnone.so", "no library");
    const Working_directory elsewhere(plugins.root());
    struct Row {
        const char* root;
        const char* path;
    };
    for (const Row row : {Row{".", "./openglessl/libnone.so"}, Row{"./", "./openglessl/libnone.so"},
                          Row{".//", ".//openglessl/libnone.so"}}) {
        SCOPED_TRACE(row.root);
        const std::string error = initialise(row.root);
        EXPECT_EQ(error.substr(0, error.find('\n')),
                  std::string("Couldn't load library at ") + row.path);
        vexacm_release_libraries();
    }
}

TEST_F(Initialise, ARelativeRootIsNotNeededAfterwards) {
    Fake_plugin plugin = gles_plugin("320", nullptr);
    plugin.outputs("").b("compiled");
    plugins.add_driver("openglessl", NEWEST, plugin);
    {
        const Working_directory inside(plugins.root());
        EXPECT_EQ(initialise("."), "");
    }
    const Working_directory elsewhere("/");
    EXPECT_EQ(stderr_of([] {
                  EXPECT_EQ(catalogue(), ONE_COMPILER);
                  Outputs outputs;
                  EXPECT_TRUE(outputs.compile(Request()));
                  EXPECT_EQ(outputs.text(), "b(compiled)");
                  EXPECT_NE(std::string(vexacm_get_extensions(0)), "");
              }),
              "");
}

TEST_F(Initialise, ThePluginsFilesAreNotNeededAfterwards) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    EXPECT_EQ(initialise(), "");
    plugins.remove("openglessl");
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request()));
    EXPECT_EQ(catalogue(), ONE_COMPILER);
}

TEST_F(Initialise, ANullDirectoryThrowsALogicError) {
    std::string text;
    EXPECT_EQ(stderr_of([&] { text = initialise_throws<std::logic_error>(nullptr); }), "");
    EXPECT_EQ(text, "basic_string: construction from null is not valid");
    const char* name = "";
    stderr_of([&] { name = vexacm_get_driver_name(0); });
    EXPECT_EQ(name, nullptr);
}

TEST_F(Initialise, ANullDirectoryLeavesTheEarlierCatalogue) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    EXPECT_EQ(initialise(), "");
    plugins.take_log();
    initialise_throws<std::logic_error>(nullptr);
    EXPECT_EQ(catalogue(), ONE_COMPILER);
    EXPECT_EQ(plugins.take_log(), "");
}

} // namespace
