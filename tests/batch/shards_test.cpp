// SPDX-License-Identifier: MIT
// A batch in parts, and the parts joined: the bytes of one run.
#include "run_files.hpp"

#include <algorithm>
#include <filesystem>
#include <random>

namespace {

namespace fs = std::filesystem;

class Shards : public Run_files {
protected:
    /// The last one is run first, and they are merged in any order.
    Everything in_shards(int count, const Arguments& arguments) const {
        Arguments files;
        for (int number = count; number >= 1; --number)
            files.push_back(shard(number, count, arguments));
        std::shuffle(files.begin(), files.end(), std::mt19937(static_cast<unsigned int>(count)));
        return merged(files);
    }

    void expect_same_bytes(const Arguments& arguments, int status) const {
        const Everything once = one_run(arguments);
        EXPECT_EQ(once.status, status);
        for (const int count : {1, 2, 3, 8, 25})
            EXPECT_TRUE(in_shards(count, arguments) == once) << count << " shards";
    }
};

TEST_F(Shards, AnyNumberThenTheBytesOfOneRun) {
    expect_same_bytes(sources(), 5);
}

TEST_F(Shards, CompilerIsGivenUpThenTheBytesOfOneRun) {
    on("BOOM", "signal 11", "before");
    on("LEAVE", "exit 3");
    Arguments arguments;
    for (int i = 0; i < 40; ++i) {
        arguments.push_back("s" + std::to_string(i) + ".frag");
        add_source(arguments.back(), i % 7 == 3    ? "BOOM"
                                     : i % 11 == 5 ? "LEAVE"
                                                   : "void main() {}");
    }
    expect_same_bytes(arguments, 4);
    arguments.insert(arguments.end(), {"--give-up-after", "1"});
    expect_same_bytes(arguments, 4);
    arguments.back() = "0";
    expect_same_bytes(arguments, 4);
}

TEST_F(Shards, CompilersOfOneNameThenTheBytesOfOneRun) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k58x", "r0").core("k58x", "r0").pair("openglessl_version", "320");
    plugin.outputs("BOOM").act("signal 11");
    plugins.add_driver("openglessl", "Vexa-K300_r6p0-00rel0", plugin);
    Arguments arguments{"--driver", "Vexa-K300_r6p0-00rel0"};
    for (int i = 0; i < 9; ++i) {
        arguments.push_back("s" + std::to_string(i) + ".frag");
        add_source(arguments.back(), i % 2 == 1 ? "BOOM" : "void main() {}");
    }
    expect_same_bytes(arguments, 4);
}

TEST_F(Shards, JobsThenThoseOfOneRunAndTheirNumbersToo) {
    const Arguments arguments = sources();
    const std::vector<std::string> all = split(one_run(arguments).lines);
    ASSERT_EQ(all.size(), 21U);
    for (std::size_t number = 1; number <= 4; ++number) {
        const auto lines = split(read_file(path(shard(static_cast<int>(number), 4, arguments))));
        std::vector<std::string> expected;
        for (std::size_t job = number - 1; job < all.size(); job += 4) {
            std::string line = all[job];
            const std::string shard =
                "\"shard\":{\"number\":" + std::to_string(number) + ",\"of\":4},";
            expected.push_back(line.insert(line.find("\"source\""), shard));
        }
        EXPECT_TRUE(
            std::is_permutation(lines.begin(), lines.end(), expected.begin(), expected.end()));
    }
}

TEST_F(Shards, OneThenSummaryAndReportsAreOfItsJobs) {
    add_source("a.frag");
    add_source("b.frag", "ERROR");
    const auto result = batch({"a.frag", "b.frag", "--shard", "2/4", "--junit", "junit"});
    EXPECT_NE(result.out.find("\n2 jobs: 1 compiled, 1 errors\n"), std::string::npos) << result.out;
    EXPECT_NE(read_file(path("junit")).find("tests=\"2\""), std::string::npos);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(split(take_requests()).size(), 2U);
}

TEST_F(Shards, MoreThanJobsThenTheLastAreEmpty) {
    add_source("a.frag");
    expect(batch({"a.frag", "--shard", "5/5", "--json"}), 0, "", "");
    expect(batch({"a.frag", "--shard", "4/5"}), 0, "no jobs\n", "");
    EXPECT_EQ(take_requests(), "");
}

TEST_F(Shards, WrongPartThenWrongUse) {
    for (const std::string part : {"", "1", "1/", "/2", "0/2", "3/2", "1/2/3", "-1/2",
                                   "1/4294967296", "a/b", " 1/2", "1/2 "})
        expect(batch({"a.frag", "--shard=" + part}), 2, "",
               "vexacm: --shard takes I/N, with I from 1 to N\n");
}

TEST_F(Shards, BinariesThenInTheFilesOfOneRun) {
    add_source("a.frag", "BINARY");
    add_source("b.frag", "BINARY");
    const Arguments arguments{"a.frag", "b.frag", "./a.frag", "--outputs", "out"};
    const auto files_below = [&](const std::string& folder) {
        std::vector<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(path(folder)))
            names.push_back(fs::relative(entry.path(), path(folder)).string());
        std::sort(names.begin(), names.end());
        return names;
    };
    const Everything once = one_run(arguments);
    const auto names = files_below("out");
    fs::remove_all(path("out"));
    EXPECT_TRUE(in_shards(3, arguments) == once);
    EXPECT_EQ(files_below("out"), names);
    EXPECT_GT(names.size(), 9U);
}

} // namespace
