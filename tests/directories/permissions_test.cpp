// SPDX-License-Identifier: MIT
#include <filesystem>

#include <grp.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "small_plugin.hpp"

namespace fs = std::filesystem;

namespace {

constexpr unsigned NOBODY = 65534;

/// A directory in which not everything is allowed to a caller without
/// privileges. The super-user, to whom everything is, asks in a child process
/// that gives them up.
class Permissions : public Directory_test {
protected:
    Permissions() {
        fs::permissions(fs::path(plugins.root()).parent_path(), fs::perms(0755));
        newest = add_small("openglessl", std::string("lib") + NEWEST + ".so");
        oldest = add_small("opencl", std::string("lib") + OLDEST + ".so");
    }

    ~Permissions() override {
        for (const std::string& path :
             {plugins.root(), plugins.path("openglessl"), plugins.path("opencl")})
            fs::permissions(path, fs::perms(0755));
    }

    /// Standard error of an initialisation, and behind it the catalogue.
    std::string seen() {
        const int file = memfd_create("seen", 0);
        const pid_t child = fork();
        if (child == 0) {
            if (getuid() == 0 &&
                (setgroups(0, nullptr) != 0 || setgid(NOBODY) != 0 || setuid(NOBODY) != 0))
                _exit(1);
            std::string text = initialise();
            text += catalogue();
            vexacm_release_libraries();
            const bool written =
                write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
            _exit(written ? 0 : 1);
        }
        int status = -1;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
        std::string text = read_file("/proc/self/fd/" + std::to_string(file));
        close(file);
        return text;
    }

    static std::string denied(const std::string& path) {
        return "Couldn't load library at " + path + "\nLibrary load error: " + path +
               ": cannot open shared object file: Permission denied\n";
    }

    static std::string closed(const std::string& path) {
        return "Unable to open library directory " + path + "\n";
    }

    std::string newest;
    std::string oldest;
};

TEST_F(Permissions, WithAllOfThemEveryPluginIsUsed) {
    EXPECT_EQ(seen(), compiler_of(NEWEST) + compiler_of(OLDEST));
}

TEST_F(Permissions, APluginThatMayNotBeReadIsTold) {
    fs::permissions(newest, fs::perms(0333));
    EXPECT_EQ(seen(), denied(newest) + compiler_of(OLDEST));
    fs::permissions(oldest, fs::perms(0));
    EXPECT_EQ(seen(), denied(newest) + denied(oldest));
}

TEST_F(Permissions, APluginNeedNotBeExecutable) {
    fs::permissions(newest, fs::perms(0444));
    EXPECT_EQ(seen(), compiler_of(NEWEST) + compiler_of(OLDEST));
}

TEST_F(Permissions, ASubdirectoryThatMayNotBeListedIsTold) {
    fs::permissions(plugins.path("openglessl"), fs::perms(0311));
    EXPECT_EQ(seen(), closed(plugins.path("openglessl")) + compiler_of(OLDEST));
    fs::permissions(plugins.path("opencl"), fs::perms(0));
    EXPECT_EQ(seen(), closed(plugins.path("openglessl")) + closed(plugins.path("opencl")));
}

TEST_F(Permissions, InASubdirectoryThatMayBeListedButNotSearchedEachFileIsTold) {
    fs::permissions(plugins.path("opencl"), fs::perms(0444));
    EXPECT_EQ(seen(), denied(oldest) + compiler_of(NEWEST));
}

TEST_F(Permissions, ARootThatMayNotBeSearchedIsToldForEachSubdirectory) {
    fs::permissions(plugins.root(), fs::perms(0666));
    EXPECT_EQ(seen(), closed(plugins.path("openglessl")) + closed(plugins.path("opencl")));
    // To be searched it need not be listed.
    fs::permissions(plugins.root(), fs::perms(0111));
    EXPECT_EQ(seen(), compiler_of(NEWEST) + compiler_of(OLDEST));
}

} // namespace
