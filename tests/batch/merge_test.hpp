// SPDX-License-Identifier: MIT
#pragma once

#include "result.hpp"
#include "run_files.hpp"

#include <optional>

/// `vexacm merge`, with lines of real runs or of made-up ones.
class Merge_test : public Run_files {
protected:
    Process_result merge(std::vector<std::string> arguments, std::string_view input = "",
                         std::string_view setup = "") const {
        arguments.insert(arguments.begin(), "merge");
        return vexacm(arguments, input, setup);
    }

    void expect_refused(const Arguments& files, const std::string& reason,
                        const char* at_file = __builtin_FILE(), int at = __builtin_LINE()) const {
        const auto result = merge(files);
        expect(result, 5, "", "vexacm: " + reason + "\n", at_file, at);
    }

    /// A line of a run with six jobs.
    static std::string made_up(std::size_t job,
                               vexacm_tool::Outcome outcome = vexacm_tool::Outcome::compiled,
                               std::optional<vexacm_tool::Shard> shard = {}, std::size_t jobs = 6) {
        vexacm_tool::Result result;
        result.job = job;
        result.jobs = jobs;
        result.run = {"d", 3};
        result.shard = shard;
        result.source = "a.frag";
        result.outcome = outcome;
        return to_line(result);
    }
};
