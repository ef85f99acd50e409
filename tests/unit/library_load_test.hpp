// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

#include "loaded_library.hpp"
#include "plugin_directory.hpp"

/// Loads plug-ins one after the other, each under the same path.
class LibraryLoad : public testing::Test {
protected:
    std::string add(const Fake_plugin& plugin, const std::string& build = "fake_plugin") {
        return plugins.add("opencl", DRIVER_FILE, plugin, build);
    }

    static std::string log(std::initializer_list<const char*> calls) {
        return log_of("opencl/" + DRIVER_FILE, calls);
    }

    /// A refused plug-in is closed at once and keeps its names.
    void expect_refused(const std::string& err, std::initializer_list<const char*> calls) {
        const Loaded_library loaded(path);
        EXPECT_EQ(loaded.err, err);
        EXPECT_EQ(plugins.take_log(), log(calls));
        EXPECT_FALSE(loaded.library->is_initialized());
        expect_names(*loaded.library);
    }

    /// A loaded one is open as long as the object lives.
    void expect_loaded() {
        Loaded_library loaded(path);
        EXPECT_EQ(loaded.err, "");
        EXPECT_EQ(plugins.take_log(),
                  log({"load", "get_api_version", "get_capabilities", "release_capabilities"}));
        EXPECT_TRUE(loaded.library->is_initialized());
        expect_names(*loaded.library);
        EXPECT_EQ(stderr_of([&] { loaded.library.reset(); }), "");
        EXPECT_EQ(plugins.take_log(), log({"unload"}));
    }

    Plugin_directory plugins;
    std::string path = plugins.path("opencl", DRIVER_FILE);

private:
    void expect_names(const Library& library) const {
        EXPECT_EQ(library.get_library_path(), path);
        EXPECT_EQ(library.get_driver_name(), DRIVER);
        EXPECT_EQ(library.get_parsed_name().core_id, 1);
        EXPECT_EQ(library.get_parsed_name().version, 6);
    }
};
