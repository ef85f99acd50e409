// SPDX-License-Identifier: MIT
#include <algorithm>
#include <filesystem>

#include "small_plugin.hpp"

namespace {

using FileNames = Directory_test;

constexpr std::size_t LONGEST_NAME = 255;
constexpr std::size_t LONGEST_PATH = 4095;

TEST_F(FileNames, EveryByteIsKept) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '/')
            bytes += static_cast<char>(byte);
    for (const char byte : bytes)
        add_small("openglessl", std::string("lib") + byte + ".so");

    // Equal names, as those that are none are: in the reverse of the order in
    // which they are found.
    std::string errors;
    std::string expected;
    for (const std::string& name : plugins.listed("openglessl")) {
        const std::string driver_name(1, name[3]);
        errors += name_error(driver_name);
        expected = compiler_of(driver_name) + expected;
    }
    EXPECT_EQ(initialise(), errors);
    EXPECT_EQ(find_compilers().size(), bytes.size());
    EXPECT_EQ(catalogue(), expected);
    for (const char byte : bytes) {
        const std::string driver_name(1, byte);
        EXPECT_EQ(
            find_compilers({driver_name.c_str(), nullptr, nullptr, nullptr, nullptr, 0}).size(),
            1u);
    }
}

TEST_F(FileNames, MayBeAsLongAsTheSystemAllows) {
    // The number of the release goes on up to the end, and further than it is read.
    const std::string beginning = "libVexa-K300_r5p0-06rel1";
    const std::string rest(LONGEST_NAME - beginning.size() - 3, 'x');
    add_small("openglessl", beginning + rest + ".so");
    const std::string digits(LONGEST_NAME - beginning.size() - 3, '0');
    add_small("openglessl", "libVexa-K300_r5p0-06rel0" + digits + ".so");
    add_small("openglessl", ".so" + std::string(LONGEST_NAME - 3, '-'));

    EXPECT_EQ(initialise(), name_error(""));
    EXPECT_EQ(catalogue(), compiler_of((beginning + rest).substr(3)) +
                               compiler_of("Vexa-K300_r5p0-06rel0" + digits) + compiler_of(""));
}

TEST_F(FileNames, PathsThatAreTooLongAreTold) {
    add_small("openglessl", std::string("lib") + NEWEST + ".so");
    add_small("openglessl", "lib" + std::string(LONGEST_NAME - 6, 'x') + ".so");
    // So long a root that the subdirectory can still be opened, and of the
    // plug-ins the one with the short name.
    std::string root = plugins.root();
    while (root.size() + std::string("//openglessl/lib.so./").size() + std::string(NEWEST).size() <
           LONGEST_PATH)
        root += "/.";
    const std::string long_path =
        root + "/openglessl/lib" + std::string(LONGEST_NAME - 6, 'x') + ".so";
    EXPECT_GT(long_path.size(), LONGEST_PATH);
    const std::string expected =
        load_error(long_path) + name_error(std::string(LONGEST_NAME - 6, 'x'));
    EXPECT_EQ(initialise(root), expected);
    EXPECT_EQ(catalogue(), compiler_of(NEWEST));
    vexacm_release_libraries();

    while (root.size() < LONGEST_PATH)
        root += "/.";
    EXPECT_EQ(initialise(root), "Unable to open library directory " + root + "/openglessl\n" +
                                    "Unable to open library directory " + root + "/opencl\n");
    EXPECT_EQ(catalogue(), "");
}

} // namespace
