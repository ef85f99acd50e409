// SPDX-License-Identifier: MIT
//
// The version is written in vexacm.h; everything else has to say the same.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "captured_stderr.hpp"
#include "plugin_directory.hpp"
#include "process.hpp"
#include "vexacm.h"

namespace {

const std::string version = std::to_string(VEXACM_VERSION_MAJOR) + "." +
                            std::to_string(VEXACM_VERSION_MINOR) + "." +
                            std::to_string(VEXACM_VERSION_PATCH);

TEST(Version, IsWhatTheManagerTells) {
    const Plugin_directory directory;
    vexacm_initialize_libraries(directory.root().c_str());
    vexacm_version told = {};
    vexacm_get_manager_version(&told);
    vexacm_release_libraries();
    EXPECT_EQ(told.major, 4u);
    EXPECT_EQ(told.minor, 0u);
    EXPECT_EQ(told.patch, 2u);
    EXPECT_EQ(version, "4.0.2");
}

TEST(Version, StandsInTheFileName) {
    EXPECT_TRUE(
        std::filesystem::is_regular_file(BUILD_DIRECTORY "/libcompiler_manager.so." + version));
}

#ifdef HAS_TOOL
TEST(Version, IsWhatTheToolTells) {
    const Process_result result = run({BUILD_DIRECTORY "/vexacm", "--version"});
    EXPECT_EQ(result.out, "vexacm " + version + "\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}
#endif

TEST(Version, HasAChangelogEntry) {
    const std::string changelog = read_file(SOURCE_DIRECTORY "/CHANGELOG.md");
    EXPECT_NE(changelog.find("\n## " + version), std::string::npos);
}

} // namespace
