// SPDX-License-Identifier: MIT
#include <filesystem>
#include <fstream>
#include <thread>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "small_plugin.hpp"

namespace fs = std::filesystem;

namespace {

// Files that are something else than a plug-in's file.
using FileKinds = Directory_test;

TEST_F(FileKinds, ALinkIsAPluginUnderTheNameOfTheLink) {
    const std::string target = plugins.root() + "/anything";
    fs::copy_file(SMALL_PLUGIN, target);
    const std::string link = plugins.path("openglessl", std::string("lib") + NEWEST + ".so");
    fs::create_symlink(target, plugins.path("openglessl", "step"));
    fs::create_symlink("step", link);
    EXPECT_EQ(initialise(), "");
    ASSERT_EQ(catalogue(), compiler_of(NEWEST));
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request()));
}

TEST_F(FileKinds, ALinkToAnotherPluginIsADriverOfItsOwn) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.add_driver("openglessl", OLDEST, gles_plugin());
    fs::remove(file("openglessl", OLDEST));
    fs::create_symlink(file("openglessl", NEWEST), file("openglessl", OLDEST));
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(), compiler_of(NEWEST) + compiler_of(OLDEST));
    vexacm_release_libraries();
    // The loader takes the two for one, and goes by the first name.
    const std::string log = plugins.take_log();
    const std::string first = "openglessl/" + plugins.listed("openglessl")[0];
    EXPECT_EQ(lines_of(log, " load") + lines_of(log, " unload"),
              first + " load\n" + first + " unload\n");
}

TEST_F(FileKinds, LinkedDirectoriesAreReadLikeOthers) {
    add_small("opencl", std::string("lib") + NEWEST + ".so");
    fs::rename(plugins.path("opencl"), plugins.path("elsewhere"));
    fs::create_directory_symlink("elsewhere", plugins.path("opencl"));
    const std::string root = plugins.root() + "-link";
    fs::create_directory_symlink(plugins.root(), root);
    for (const std::string& spelled : {root, root + "/"}) {
        EXPECT_EQ(initialise(spelled), "");
        EXPECT_EQ(catalogue(), compiler_of(NEWEST));
        vexacm_release_libraries();
    }
}

TEST_F(FileKinds, LinksThatGoInCirclesAreTold) {
    fs::create_symlink("self.so", plugins.path("openglessl", "self.so"));
    fs::create_symlink("there.so", plugins.path("openglessl", "here.so"));
    fs::create_symlink("here.so", plugins.path("openglessl", "there.so"));
    // Not a circle, but for who would follow it downwards.
    fs::create_directory_symlink("..", plugins.path("openglessl", "up.so"));
    add_small("openglessl", std::string("lib") + NEWEST + ".so");
    plugins.remove("opencl");
    fs::create_directory_symlink("opencl", plugins.path("opencl"));

    const std::string expected = errors_of_all_but(NEWEST);
    EXPECT_EQ(initialise(),
              "Unable to open library directory " + plugins.path("opencl") + "\n" + expected);
    EXPECT_EQ(catalogue(), compiler_of(NEWEST));
}

TEST_F(FileKinds, WhatIsNoFileIsTold) {
    fs::create_directory(plugins.path("openglessl", "directory.so"));
    for (const char* const device : {"null", "zero", "full"})
        fs::create_symlink(std::string("/dev/") + device,
                           plugins.path("openglessl", std::string(device) + ".so"));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::string socket_path = plugins.path("openglessl", "socket.so");
    ASSERT_LT(socket_path.size(), sizeof address.sun_path);
    socket_path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    add_small("openglessl", std::string("lib") + NEWEST + ".so");

    const std::string expected = errors_of_all_but(NEWEST);
    EXPECT_EQ(initialise(), expected);
    EXPECT_EQ(catalogue(), compiler_of(NEWEST));
    close(listener);
}

TEST_F(FileKinds, APipeIsOpenedWhenItHasAWriterAndTold) {
    const std::string pipe = plugins.path("openglessl", "pipe.so");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    add_small("openglessl", std::string("lib") + NEWEST + ".so");
    // Opens as soon as the loader does, and has nothing to say.
    const auto write_nothing = [&] { std::ofstream writer(pipe); };

    std::thread writer(write_nothing);
    const std::string expected = load_error(pipe);
    writer.join();
    writer = std::thread(write_nothing);
    EXPECT_EQ(initialise(), expected + name_error("pipe"));
    writer.join();
    EXPECT_EQ(catalogue(), compiler_of(NEWEST));
}

} // namespace
