// SPDX-License-Identifier: MIT
#include "result.hpp"

#include "../hexadecimal.hpp"

#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

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

bool is_utf8(const std::string& text) {
    return ordered_json::parse(dump(text)) == text;
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

std::string to_line(const Result& result) {
    ordered_json line{{"job", result.job}, {"jobs", result.jobs}, {"source", result.source}};
    if (!is_utf8(result.source))
        line["source_bytes"] = hexadecimal(result.source);
    line["stage"] = result.stage;
    line["defines"] = result.defines;
    line["kernels"] = result.kernels;
    line["compiler"] = {{"driver", result.compiler.driver},
                        {"core", result.compiler.core},
                        {"revision", result.compiler.revision},
                        {"api", result.compiler.api},
                        {"version", result.compiler.version}};
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

Result result_of_line(std::string_view text) {
    const ordered_json line = ordered_json::parse(text);
    const auto outcome = outcome_named(line.at("outcome").get<std::string>());
    if (!outcome)
        throw std::runtime_error("unknown outcome");
    Result result;
    line.at("job").get_to(result.job);
    line.at("jobs").get_to(result.jobs);
    line.at("source").get_to(result.source);
    if (line.contains("source_bytes"))
        result.source = bytes_of_hexadecimal(line["source_bytes"].get<std::string>());
    line.at("stage").get_to(result.stage);
    line.at("defines").get_to(result.defines);
    line.at("kernels").get_to(result.kernels);
    const ordered_json& compiler = line.at("compiler");
    compiler.at("driver").get_to(result.compiler.driver);
    compiler.at("core").get_to(result.compiler.core);
    compiler.at("revision").get_to(result.compiler.revision);
    compiler.at("api").get_to(result.compiler.api);
    compiler.at("version").get_to(result.compiler.version);
    result.outcome = *outcome;
    line.at("detail").get_to(result.detail);
    line.at("errors").get_to(result.errors);
    line.at("warnings").get_to(result.warnings);
    line.at("tables").get_to(result.tables);
    line.at("binary_size").get_to(result.binary_size);
    if (line.contains("output"))
        result.output = line["output"].get<std::string>();
    line.at("printed").get_to(result.printed);
    return result;
}

} // namespace vexacm_tool
