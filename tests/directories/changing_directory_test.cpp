// SPDX-License-Identifier: MIT
#include <cstdio>
#include <filesystem>
#include <set>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "small_plugin.hpp"

namespace fs = std::filesystem;

namespace {

using ChangingDirectory = Directory_test;

/// Another process that repeats an action until it is stopped.
class Other_process {
public:
    template <class Action>
    explicit Other_process(Action action) : child(fork()) {
        if (child != 0)
            return;
        for (unsigned round = 0;; ++round) {
            action(round);
            usleep(20); // on one core, the other's turn
        }
    }
    ~Other_process() {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    Other_process(const Other_process&) = delete;
    Other_process& operator=(const Other_process&) = delete;

private:
    pid_t child;
};

std::multiset<std::string> lines(const std::string& text) {
    std::multiset<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        lines.insert(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

TEST_F(ChangingDirectory, WhatStaysIsOfferedAndWhatComesAndGoesIsOfferedOrTold) {
    const std::string api = "openglessl";
    add_small(api, std::string("lib") + NEWEST + ".so");
    add_small(api, std::string("lib") + OLDEST + ".so");
    const std::string parked = plugins.root() + "/parked";
    fs::copy_file(SMALL_PLUGIN, parked);
    const std::string guest = plugins.path(api, std::string("lib") + MIDDLE + ".so");
    const std::string junk = plugins.path(api, "junk.so");

    unsigned present = 0;
    unsigned told = 0;
    {
        // Plug-ins come and go whole, by renaming.
        const Other_process other([&](unsigned round) {
            if (round % 2 == 0) {
                rename(parked.c_str(), guest.c_str());
                fs::create_symlink("nowhere", junk);
            } else {
                rename(guest.c_str(), parked.c_str());
                unlink(junk.c_str());
            }
            // Makes the directory itself grow, and what is found in it move.
            const std::string more = plugins.path(api, std::to_string(round % 97) + ".so");
            if (symlink("nowhere", more.c_str()) != 0)
                unlink(more.c_str());
        });
        for (int i = 0; i < 300; ++i) {
            const std::multiset<std::string> error = lines(initialise());
            // A file found is offered, or else told in three lines.
            for (auto line = error.begin(); line != error.end(); ++line) {
                const std::string path = plugins.path(api) + "/";
                EXPECT_TRUE(line->rfind("Couldn't load library at " + path, 0) == 0 ||
                            line->rfind("Library load error: " + path, 0) == 0 ||
                            line->rfind("Driver name parse error: \"", 0) == 0)
                    << *line;
            }
            told += error.count("Couldn't load library at " + guest) != 0;
            const std::string offered = catalogue();
            if (offered != compiler_of(NEWEST) + compiler_of(OLDEST)) {
                ++present;
                EXPECT_EQ(offered, compiler_of(NEWEST) + compiler_of(MIDDLE) + compiler_of(OLDEST));
            }
            Outputs outputs;
            for (const unsigned int id : find_compilers())
                EXPECT_TRUE(outputs.compile(Request(), id));
            outputs.release();
            vexacm_release_libraries();
        }
    }
    std::printf("of 300 times it was there %u times, and gone when it was opened %u times\n",
                present, told);
    // Nothing of it stays.
    for (const std::string& name : plugins.listed(api))
        if (name.find("Vexa") == std::string::npos || name.find(MIDDLE) != std::string::npos)
            fs::remove(plugins.path(api, name));
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(), compiler_of(NEWEST) + compiler_of(OLDEST));
}

} // namespace
