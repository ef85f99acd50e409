// SPDX-License-Identifier: MIT
#include <functional>
#include <vector>

#include <dirent.h>

#include "fault_test.hpp"

namespace {

// Two plug-ins in each subdirectory, newest and oldest driver first.
class SystemSaysNo : public Fault_test {
protected:
    SystemSaysNo() {
        for (const char* const driver : {NEWEST, OLDEST}) {
            plugins.add_driver("openglessl", driver, gles_plugin());
            plugins.add_driver("opencl", driver, opencl_plugin());
        }
        // In the order in which they are found.
        for (const char* const api : {"openglessl", "opencl"})
            for (const std::string& name : plugins.listed(api))
                candidates.push_back(plugins.path(api, name));
        initialise_in_scenario();
    }

    // What is in the catalogue when these candidates are used.
    std::string compilers_of(const std::function<bool(std::size_t candidate)>& used) const {
        std::string compilers;
        for (const char* const driver : {NEWEST, OLDEST})
            for (const char* const api : {"opencl", "openglessl"})
                for (std::size_t i = 0; i < candidates.size(); ++i)
                    if (candidates[i] == file(api, driver) && used(i))
                        compilers += std::string(api) == "opencl" ? opencl_compiler(driver)
                                                                  : gles_compiler(driver);
        return compilers;
    }

    Outcome whole() const {
        return {compilers_of([](std::size_t) { return true; }), "", ""};
    }

    std::vector<std::string> candidates;
};

TEST_F(SystemSaysNo, NoDirectoryCanBeOpened) {
    const auto expected = [&](long number) -> Outcome {
        const std::string path = plugins.path(number == 1 ? "openglessl" : "opencl");
        return {compilers_of([&](std::size_t i) { return candidates[i].find(path + "/") != 0; }),
                "Unable to open library directory " + path + "\n", ""};
    };
    EXPECT_EQ(scenario.fail_each(Call::OPENDIR, whole(), expected), 2);
}

// What was read until then is used; the other subdirectory is read all the same.
TEST_F(SystemSaysNo, NoMoreOfADirectoryCanBeRead) {
    // For each call, which candidates are used when it fails.
    std::vector<std::vector<bool>> used;
    std::size_t first = 0;
    for (const char* const api : {"openglessl", "opencl"}) {
        std::vector<bool> found(candidates.size(), true);
        for (std::size_t i = 0; i < 2; ++i)
            found[first + i] = false;
        used.push_back(found);
        DIR* const directory = opendir(plugins.path(api).c_str());
        for (std::size_t next = first; const dirent* const entry = readdir(directory);) {
            if (std::string(entry->d_name).find(".so") != std::string::npos)
                found[next++] = true;
            used.push_back(found);
        }
        closedir(directory);
        first += 2;
    }
    const auto expected = [&](long number) -> Outcome {
        const std::vector<bool>& row = used.at(static_cast<std::size_t>(number - 1));
        return {compilers_of([&](std::size_t i) { return bool(row[i]); }), "", ""};
    };
    // ".", "..", two plug-ins with a steering file each, and the end.
    EXPECT_EQ(used.size(), 14U);
    EXPECT_EQ(scenario.fail_each(Call::READDIR, whole(), expected), 14);
}

TEST_F(SystemSaysNo, NoPluginCanBeOpened) {
    const auto expected = [&](long number) -> Outcome {
        const auto refused = static_cast<std::size_t>(number - 1);
        return {compilers_of([&](std::size_t i) { return i != refused; }),
                "Couldn't load library at " + candidates.at(refused) +
                    "\nLibrary load error: the system says no\n",
                ""};
    };
    EXPECT_EQ(scenario.fail_each(Call::DLOPEN, whole(), expected), 4);
}

TEST_F(SystemSaysNo, NoFunctionCanBeFound) {
    const auto expected = [&](long number) -> Outcome {
        const auto refused = static_cast<std::size_t>((number - 1) / 5);
        return {compilers_of([&](std::size_t i) { return i != refused; }),
                "Library at " + candidates.at(refused) + " isn't implemented correctly\n", ""};
    };
    EXPECT_EQ(scenario.fail_each(Call::DLSYM, whole(), expected), 4 * 5);
}

} // namespace
