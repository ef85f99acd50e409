// SPDX-License-Identifier: MIT
#pragma once

#include "result.hpp"

#include <functional>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using vexacm_tool::Compiler_name;
using vexacm_tool::Outcome;
using vexacm_tool::Result;

const Compiler_name K580{"Vexa-K300_r5p0-06rel0", "Vexa-K580", "r0p0_00rel0", "openglessl", 320};
const Compiler_name K460{"Vexa-K300_r5p0-06rel0", "Vexa-K460", "r0p1_00rel0", "openglessl", 320};
const Compiler_name K420{"Vexa-K300_r1p0-00rel0", "Vexa-K420", "r2p0_02rel1", "openglessl", 300};
const Compiler_name K580_CL{"Vexa-K300_r5p0-06rel0", "Vexa-K580", "r0p0_00rel0", "opencl", 200};

/// Results of a run that a test makes up.
class Made_results : public vexacm_tool::Result_source {
public:
    Made_results() = default;
    Made_results(Made_results&& other) noexcept : results_(std::move(other.results_)) {}

    /// A job behind the others, which compiled; the test may change all of it.
    Result& add(const std::string& source, const Compiler_name& compiler,
                Outcome outcome = Outcome::compiled);

    void for_each(const std::function<void(const Result&)>& visit) const override;

private:
    std::vector<Result> results_;
};

/// A run with some of everything: what folds and what does not, each outcome,
/// and texts that no format likes.
Made_results some_of_everything();

using Report = void(const vexacm_tool::Result_source&, std::ostream&);

std::string written(Report* report, const Made_results& results);

/// Compares with a whole file. With WRITE_GOLDEN_FILES in the environment it
/// writes the file instead, and fails, so that what it says is read.
void expect_golden(const std::string& file, const std::string& text);
