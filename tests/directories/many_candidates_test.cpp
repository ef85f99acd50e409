// SPDX-License-Identifier: MIT
#include <algorithm>
#include <tuple>

#include "small_plugin.hpp"

namespace {

using ManyCandidates = Directory_test;

constexpr int COUNT = 5000;

struct Driver {
    int revision, patch, version, release;

    std::string name() const {
        return "Vexa-K300_r" + std::to_string(revision) + "p" + std::to_string(patch) + "-" +
               std::to_string(version) + "rel" + std::to_string(release);
    }
    bool operator>(const Driver& other) const {
        return std::tie(revision, patch, version, release) >
               std::tie(other.revision, other.patch, other.version, other.release);
    }
};

TEST_F(ManyCandidates, FiveThousandPluginsAreAllOffered) {
    std::vector<Driver> drivers;
    for (int i = 0; i < COUNT; ++i) {
        // Numbers that are no order of texts: 10 is more than 9.
        const Driver driver = {i % 11, i / 11 % 11, i / 121 % 11, i / 1331};
        add_small("openglessl", "lib" + driver.name() + ".so");
        drivers.push_back(driver);
    }
    std::sort(drivers.begin(), drivers.end(), std::greater<>());
    std::string expected;
    for (const Driver& driver : drivers)
        expected += compiler_of(driver.name());

    EXPECT_EQ(initialise(), "");
    // As one: that many lines are not to be told apart one by one.
    EXPECT_TRUE(catalogue() == expected);
    const std::string oldest = drivers.back().name();
    EXPECT_EQ(find_compilers({oldest.c_str(), nullptr, nullptr, nullptr, nullptr, 0}),
              (std::vector<unsigned int>{COUNT - 1}));
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request(), COUNT - 1));
    outputs.release();
    EXPECT_EQ(stderr_of([] { vexacm_release_libraries(); }), "");
}

TEST_F(ManyCandidates, FiveThousandFilesThatAreNoPluginsAreAllTold) {
    for (int i = 0; i < COUNT - 1; ++i)
        plugins.add_file("openglessl", std::to_string(i) + ".so", i % 2 ? "no library" : "");
    add_small("openglessl", std::string("lib") + NEWEST + ".so");
    const std::string expected = errors_of_all_but(NEWEST);
    EXPECT_TRUE(initialise() == expected);
    EXPECT_EQ(catalogue(), compiler_of(NEWEST));
}

} // namespace
