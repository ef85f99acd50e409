// SPDX-License-Identifier: MIT
#include "result.hpp"

#include "../hexadecimal.hpp"

#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <type_traits>

namespace vexacm_tool {

namespace {

using nlohmann::ordered_json;

struct Named_outcome {
    Outcome outcome;
    const char* name;
    Exit_status status;
};

constexpr Named_outcome OUTCOMES[] = {
    {Outcome::compiled, "compiled", Exit_status::done},
    {Outcome::errors, "errors", Exit_status::source_errors},
    {Outcome::refused, "refused", Exit_status::refused},
    {Outcome::no_binary, "no_binary", Exit_status::refused},
    {Outcome::crashed, "crashed", Exit_status::refused},
    {Outcome::exited, "exited", Exit_status::refused},
    {Outcome::timed_out, "timed_out", Exit_status::refused},
    {Outcome::out_of_memory, "out_of_memory", Exit_status::refused},
    {Outcome::given_up, "given_up", Exit_status::refused},
    {Outcome::unreadable, "unreadable", Exit_status::input_output},
    {Outcome::unwritable, "unwritable", Exit_status::input_output},
    {Outcome::not_run, "not_run", Exit_status::done},
};

const Named_outcome& row(Outcome outcome) {
    return OUTCOMES[static_cast<std::size_t>(outcome)];
}

std::string dump(const ordered_json& value) {
    return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

/// The members of an object, all of which are to be read.
class Members {
public:
    explicit Members(const ordered_json& object) : object_(object) {}

    bool have(const char* key) const { return object_.contains(key); }
    const ordered_json& operator[](const char* key) {
        ++read_;
        return object_.at(key);
    }
    void end() const {
        if (read_ != object_.size())
            throw std::runtime_error("unknown key");
    }

private:
    const ordered_json& object_;
    std::size_t read_ = 0;
};

// Of the parser's own conversions, those of numbers take whatever is a number.
template <class Number>
std::enable_if_t<std::is_unsigned_v<Number>> read(const ordered_json& value, Number& number) {
    if (!value.is_number_unsigned() ||
        value.get<std::uint64_t>() > std::numeric_limits<Number>::max())
        throw std::runtime_error("no such number");
    value.get_to(number);
}

template <class Texts>
std::enable_if_t<!std::is_unsigned_v<Texts>> read(const ordered_json& value, Texts& texts) {
    value.get_to(texts);
}

void read(const ordered_json& value, Outcome& outcome) {
    const auto found = outcome_named(value.get_ref<const std::string&>());
    if (!found)
        throw std::runtime_error("unknown outcome");
    outcome = *found;
}

void read_bytes(const ordered_json& value, std::string& bytes) {
    const auto& digits = value.get_ref<const std::string&>();
    bytes = bytes_of_hexadecimal(digits);
    if (hexadecimal(bytes) != digits)
        throw std::runtime_error("no bytes");
}

bool is_utf8(const std::string& text) {
    return ordered_json::parse(dump(text)) == text;
}

ordered_json to_json(const Job_head& job) {
    ordered_json line{{"job", job.job}, {"jobs", job.jobs}};
    line["run"] = {{"digest", job.run.digest}, {"give_up_after", job.run.give_up_after}};
    if (job.shard)
        line["shard"] = {{"number", job.shard->number}, {"of", job.shard->of}};
    line["source"] = job.source;
    if (!is_utf8(job.source))
        line["source_bytes"] = hexadecimal(job.source);
    line["stage"] = job.stage;
    line["defines"] = job.defines;
    line["kernels"] = job.kernels;
    line["compiler"] = {{"driver", job.compiler.driver},
                        {"core", job.compiler.core},
                        {"revision", job.compiler.revision},
                        {"api", job.compiler.api},
                        {"version", job.compiler.version}};
    return line;
}

} // namespace

const char* name(Outcome outcome) {
    return row(outcome).name;
}

std::optional<Outcome> outcome_named(std::string_view name) {
    for (const Named_outcome& named : OUTCOMES)
        if (name == named.name)
            return named.outcome;
    return std::nullopt;
}

Exit_status exit_status(Outcome outcome) {
    return row(outcome).status;
}

bool costs_a_worker(Outcome outcome) {
    return outcome == Outcome::crashed || outcome == Outcome::exited ||
           outcome == Outcome::timed_out || outcome == Outcome::out_of_memory;
}

bool stands(Outcome outcome) {
    return outcome != Outcome::not_run && outcome != Outcome::given_up;
}

Result given_up(Job_head head) {
    const unsigned int count = head.run.give_up_after;
    return {std::move(head), Outcome::given_up,
            "its compiler had cost " + std::to_string(count) +
                (count == 1 ? " worker" : " workers")};
}

std::string two_results(std::size_t job, const std::string& file, const std::string& other) {
    return "two results for job " + std::to_string(job) + ", in '" + file + "' and '" + other + "'";
}

std::string to_line(const Result& result) {
    ordered_json line = to_json(result);
    line["outcome"] = name(result.outcome);
    line["detail"] = result.detail;
    line["errors"] = result.errors;
    line["warnings"] = result.warnings;
    line["tables"] = result.tables;
    line["binary_size"] = result.binary_size;
    if (result.output)
        line["output"] = *result.output;
    line["printed"] = result.printed;
    return dump(line) + '\n';
}

std::string to_line(const Planned_job& job) {
    ordered_json line = to_json(job);
    line["plugins"] = job.plugins;
    if (job.output)
        line["output"] = *job.output;
    return dump(line) + '\n';
}

Result result_of_line(std::string_view text) {
    const ordered_json json = ordered_json::parse(text);
    Members line(json);
    Result result;
    read(line["job"], result.job);
    read(line["jobs"], result.jobs);
    Members run(line["run"]);
    read(run["digest"], result.run.digest);
    read(run["give_up_after"], result.run.give_up_after);
    run.end();
    if (line.have("shard")) {
        Members shard(line["shard"]);
        read(shard["number"], result.shard.emplace().number);
        read(shard["of"], result.shard->of);
        shard.end();
    }
    read(line["source"], result.source);
    if (line.have("source_bytes"))
        read_bytes(line["source_bytes"], result.source);
    read(line["stage"], result.stage);
    read(line["defines"], result.defines);
    read(line["kernels"], result.kernels);
    Members compiler(line["compiler"]);
    read(compiler["driver"], result.compiler.driver);
    read(compiler["core"], result.compiler.core);
    read(compiler["revision"], result.compiler.revision);
    read(compiler["api"], result.compiler.api);
    read(compiler["version"], result.compiler.version);
    compiler.end();
    read(line["outcome"], result.outcome);
    read(line["detail"], result.detail);
    read(line["errors"], result.errors);
    read(line["warnings"], result.warnings);
    read(line["tables"], result.tables);
    read(line["binary_size"], result.binary_size);
    if (line.have("output"))
        read(line["output"], result.output.emplace());
    read(line["printed"], result.printed);
    line.end();
    return result;
}

} // namespace vexacm_tool
