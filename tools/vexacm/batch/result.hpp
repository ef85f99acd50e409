// SPDX-License-Identifier: MIT
#pragma once

#include "../failure.hpp"
#include "shard.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vexacm_tool {

/// How a job ended.
enum class Outcome {
    compiled,
    errors,        ///< the compiler told errors in the source
    refused,       ///< the compiler did not carry out the request
    no_binary,     ///< one was asked for, and none came
    crashed,       ///< a signal ended the worker
    exited,        ///< the plug-in ended the worker
    timed_out,     ///< no answer within the time limit
    out_of_memory, ///< none was left within the memory limit
    given_up,      ///< not run: its compiler had cost too many workers
    unreadable,    ///< the source could not be read
    unwritable,    ///< the binary could not be written
    not_run        ///< the run was interrupted before
};

const char* name(Outcome outcome);
std::optional<Outcome> outcome_named(std::string_view name);

/// What a run that has such a job tells its caller.
Exit_status exit_status(Outcome outcome);

/// Whether it cost the worker that the job ran in.
bool costs_a_worker(Outcome outcome);

/// Whether the job is done, and not to be found out in another attempt.
bool stands(Outcome outcome);

struct Compiler_name {
    std::string driver;
    std::string core;
    std::string revision;
    std::string api;
    unsigned int version = 0;
};

/// What all results of a run have in common. Those of equal ones fit together.
struct Run_name {
    std::string digest; ///< see Identity
    unsigned int give_up_after = 0;

    bool operator!=(const Run_name& other) const {
        return digest != other.digest || give_up_after != other.give_up_after;
    }
};

/// What there is to tell of a job before it is run. Here and in Result, the
/// members are in the order of the keys of a line.
struct Job_head {
    std::size_t job = 0;  ///< its number in job order
    std::size_t jobs = 0; ///< how many there are in all
    Run_name run;
    std::optional<Shard> shard; ///< which this was, when it was no whole run
    std::string source;         ///< the file as the user named it, any bytes
    std::string stage;
    std::vector<std::string> defines;
    std::vector<std::string> kernels;
    Compiler_name compiler;
};

/// A job that is to be run, and what it has to do with files.
struct Planned_job : Job_head {
    std::vector<std::string> plugins;  ///< the compiler's, see plugin_files()
    std::optional<std::string> output; ///< the file of the binary, when one is to be written
};

/// All that is known of a job.
struct Result : Job_head {
    Result() = default;
    Result(Job_head head, Outcome job_outcome, std::string job_detail = {})
        : Job_head(std::move(head)), outcome(job_outcome), detail(std::move(job_detail)) {}

    Outcome outcome = Outcome::not_run;
    std::string detail; ///< what there is to add to the outcome
    std::vector<std::string> errors;
    std::vector<std::string> warnings;
    std::vector<std::vector<std::string>> tables;
    std::uint64_t binary_size = 0;
    std::optional<std::string> output; ///< the file of the binary, when one was written
    std::string printed;               ///< what the plug-in wrote to its standard streams
};

/// That a job was not run as its compiler was given up.
Result given_up(Job_head head);

/// What is wrong when files have two for one job.
std::string two_results(std::size_t job, const std::string& file, const std::string& other);

/// The result as one JSON object and a newline. Bytes that are no UTF-8 are
/// replaced; a source's name is then told in hexadecimal too.
std::string to_line(const Result& result);

/// The same of a job that is to be run.
std::string to_line(const Planned_job& job);

/// Reads such a line; without the newline too. Throws std::exception for whatever
/// to_line() does not write.
Result result_of_line(std::string_view line);

/// The results of a run.
class Result_source {
public:
    Result_source() = default;
    virtual ~Result_source() = default;
    Result_source(const Result_source&) = delete;
    Result_source& operator=(const Result_source&) = delete;

    /// Visits them in job order; as often as it is called.
    virtual void for_each(const std::function<void(const Result&)>& visit) const = 0;
};

} // namespace vexacm_tool
