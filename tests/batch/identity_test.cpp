// SPDX-License-Identifier: MIT
// Which runs are the same.
#include "batch_test.hpp"

#include "result.hpp"

#include <filesystem>

namespace {

class Identity : public Batch_test {
protected:
    Identity() {
        add_source("a.frag", "one");
        add_source("b.cl", "two");
    }

    /// Of a run of two sources with these arguments.
    std::string digest(std::vector<std::string> arguments = {},
                       const std::string& setup = "") const {
        arguments.insert(arguments.end(), {"a.frag", "b.cl", "--kernel", "k"});
        const std::string lines = ordered(arguments, setup).out;
        return vexacm_tool::result_of_line(lines.substr(0, lines.find('\n'))).run.digest;
    }
};

TEST_F(Identity, OtherCircumstancesThenTheSame) {
    const std::string once = digest();
    EXPECT_EQ(once.size(), 32U);
    EXPECT_EQ(digest(), once);
    EXPECT_EQ(digest({"-j", "1", "--timeout", "7", "--memory-limit", "1000"}), once);
    EXPECT_EQ(digest({"--give-up-after", "5", "--junit", "junit", "--shard", "1/2"}), once);
    EXPECT_EQ(digest({}, "touch -d 2001-01-01 a.frag"), once);
    std::filesystem::rename(plugins.path("openglessl"), plugins.root() + "/elsewhere");
    std::filesystem::copy(plugins.root() + "/elsewhere", plugins.path("openglessl"));
    EXPECT_EQ(digest(), once);
    EXPECT_EQ(digest({"--outputs", "one"}), digest({"--outputs", "two"}));
}

TEST_F(Identity, OtherOptionsOrSourcesThenAnother) {
    std::vector<std::string> all{digest(),
                                 digest({"--core", "Vexa-K580"}),
                                 digest({"-D", "A"}),
                                 digest({"-D", "A", "-D", "B"}),
                                 digest({"-D", "AB"}),
                                 digest({"--prerotate"}),
                                 digest({"--outputs", "out"}),
                                 digest({"--kernel", "l"}),
                                 digest({"a.frag"}),
                                 digest({"./a.frag"})};
    add_source("a.frag", "three");
    all.push_back(digest());
    add_source("a.frag", "");
    all.push_back(digest());
    std::filesystem::remove(path("a.frag"));
    all.push_back(digest());
    for (std::size_t i = 0; i < all.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_NE(all[i], all[j]) << i << " and " << j;
}

TEST_F(Identity, ManifestWithAnotherStageThenAnother) {
    write_file(path("m"), R"({"sources": [{"source": "a.frag"}]})");
    const std::string once = digest({"--manifest", "m"});
    write_file(path("m"), R"({"sources": [{"source": "a.frag", "stage": "vertex"}]})");
    EXPECT_NE(digest({"--manifest", "m"}), once);
}

TEST_F(Identity, PluginWithOtherBytesThenAnother) {
    const std::string once = digest();
    const std::string of_kernels = digest({"--api", "opencl"});
    const std::string file = plugins.path("openglessl", "libVexa-K300_r1p0-00rel0.so");
    write_file(file, read_file(file) + "x");
    EXPECT_NE(digest(), once);
    // What is not asked does not count.
    EXPECT_EQ(digest({"--api", "opencl"}), of_kernels);
}

} // namespace
