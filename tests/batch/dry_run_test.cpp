// SPDX-License-Identifier: MIT
#include "batch_test.hpp"

#include <nlohmann/json.hpp>
#include <sstream>

namespace {

class DryRun : public Batch_test {
protected:
    DryRun() {
        add_source("a.frag");
        add_source("c.cl", "BINARY");
    }

    std::vector<nlohmann::json> dry(std::vector<std::string> arguments, int status = 0) {
        arguments.insert(arguments.begin(), "--dry-run");
        const auto result = batch(arguments);
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(take_requests(), "");
        std::vector<nlohmann::json> jobs;
        std::istringstream lines(result.out);
        for (std::string line; std::getline(lines, line);)
            jobs.push_back(nlohmann::json::parse(line));
        return jobs;
    }

    std::string plugin(const std::string& api, const std::string& driver) const {
        return plugins.root() + "/" + api + "/lib" + driver + ".so";
    }
};

TEST_F(DryRun, LinesThenTheBeginningsOfThoseOfTheRun) {
    const std::vector<std::string> arguments{"a.frag", "c.cl", "--kernel", "k", "-D", "ONE"};
    const std::string listed = [&] {
        auto all = arguments;
        all.insert(all.begin(), "--dry-run");
        return batch(all).out;
    }();
    const std::string run = ordered(arguments).out;
    std::istringstream planned(listed);
    std::istringstream done(run);
    int jobs = 0;
    for (std::string plan, result; std::getline(planned, plan) && std::getline(done, result);
         ++jobs)
        EXPECT_EQ(plan.substr(0, plan.find(",\"plugins\"")),
                  result.substr(0, result.find(",\"outcome\"")));
    EXPECT_EQ(jobs, 4);
}

TEST_F(DryRun, PluginsThenThoseOfTheCompiler) {
    const auto jobs = dry({"a.frag", "c.cl", "--kernel", "k"});
    ASSERT_EQ(jobs.size(), 4U);
    const std::string files[] = {plugin("openglessl", "Vexa-K300_r5p0-06rel0"),
                                 plugin("openglessl", "Vexa-K300_r5p0-06rel0"),
                                 plugin("openglessl", "Vexa-K300_r1p0-00rel0"),
                                 plugin("opencl", "Vexa-K300_r5p0-06rel0")};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(jobs[i]["plugins"], nlohmann::json::array({files[i]}));
        EXPECT_FALSE(jobs[i].contains("output"));
    }
}

TEST_F(DryRun, OutputsThenWhereTheRunWritesThem) {
    const std::vector<std::string> arguments{"c.cl", "--kernel", "k", "--outputs", "out"};
    const auto jobs = dry(arguments);
    ASSERT_EQ(jobs.size(), 1U);
    EXPECT_EQ(files(), (std::vector<std::string>{"a.frag", "c.cl"}));
    EXPECT_EQ(batch(arguments).status, 0);
    EXPECT_EQ(read_file(path(jobs[0]["output"].get<std::string>())),
              std::string_view("\x00\x01\n\xff", 4));
}

TEST_F(DryRun, ShardThenItsJobs) {
    const auto jobs = dry({"a.frag", "c.cl", "--kernel", "k", "--shard", "2/3"});
    ASSERT_EQ(jobs.size(), 1U);
    EXPECT_EQ(jobs[0]["job"], 1);
    EXPECT_EQ(jobs[0]["shard"], nlohmann::json({{"number", 2}, {"of", 3}}));
}

TEST_F(DryRun, ResumeThenWhatIsLeft) {
    const std::string lines = ordered({"a.frag"}).out;
    take_requests();
    add_source("done", lines.substr(0, lines.find('\n') + 1));
    const auto jobs = dry({"a.frag", "--resume", "done"});
    ASSERT_EQ(jobs.size(), 2U);
    EXPECT_EQ(jobs[0]["job"], 1);
    EXPECT_EQ(jobs[1]["job"], 2);
}

TEST_F(DryRun, ReportsThenNoneIsWritten) {
    dry({"a.frag", "--junit", "j"});
    EXPECT_EQ(files(), (std::vector<std::string>{"a.frag", "c.cl"}));
}

TEST_F(DryRun, NoCompilerForSomeThenToldAndTheOthersListed) {
    EXPECT_EQ(dry({"a.frag", "c.cl", "--kernel", "k", "--core", "Vexa-K460"}, 3).size(), 1U);
}

} // namespace
