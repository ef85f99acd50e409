// SPDX-License-Identifier: MIT
#include "sarif.hpp"

#include "matrix.hpp"
#include "position.hpp"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string_view>

namespace vexacm_tool {

namespace {

using nlohmann::ordered_json;

struct Rule {
    const char* id;
    const char* level;
    const char* description;
};

// A rule for each outcome; in place of what compiled, one for its warnings.
constexpr Rule RULES[] = {
    {"warnings", "warning", "The compiler warned."},
    {"errors", "error", "The source has errors."},
    {"refused", "error", "The compiler did not carry out the request."},
    {"no_binary", "error", "The compiler returned no binary."},
    {"crashed", "error", "The compiler crashed."},
    {"exited", "error", "The compiler ended its process."},
    {"timed_out", "error", "The compiler gave no answer within the time limit."},
    {"out_of_memory", "error", "The compiler did not keep to the memory limit."},
    {"given_up", "note", "Not compiled: the compiler had failed too often."},
    {"unreadable", "error", "The source could not be read."},
    {"unwritable", "error", "The binary could not be written."},
    {"not_run", "note", "Not compiled: the run was interrupted."},
};
constexpr auto WARNINGS = Outcome::compiled;
static_assert(std::size(RULES) == static_cast<std::size_t>(Outcome::not_run) + 1);

const Rule& rule_of(Outcome outcome) {
    return RULES[static_cast<std::size_t>(outcome)];
}

std::string dump(const ordered_json& value) {
    return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

ordered_json rules() {
    auto array = ordered_json::array();
    for (const Rule& rule : RULES)
        array.push_back({{"id", rule.id},
                         {"shortDescription", {{"text", rule.description}}},
                         {"defaultConfiguration", {{"level", rule.level}}}});
    return array;
}

// The file's path as a URI: any bytes may be in it.
std::string uri_of(const std::string& path) {
    constexpr std::string_view PLAIN = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                       "0123456789-._~/";
    constexpr std::string_view DIGITS = "0123456789ABCDEF";
    std::string uri = path.substr(0, 1) == "/" ? "file://" : "";
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (PLAIN.find(character) != std::string_view::npos)
            uri += character;
        else
            uri.append({'%', DIGITS[byte >> 4U], DIGITS[byte & 15U]});
    }
    return uri;
}

// In a message, "{0}" stands for an argument, and doubled braces for braces.
std::string message_text(std::string_view text) {
    std::string message;
    for (const char character : text.substr(0, text.find_last_not_of("\r\n") + 1)) {
        message += character;
        if (character == '{' || character == '}')
            message += character;
    }
    return message.empty() ? "(no text)" : message;
}

ordered_json location(const std::string& source, const std::optional<Position>& position) {
    ordered_json place{{"artifactLocation", {{"uri", uri_of(source)}}}};
    if (position) {
        place["region"]["startLine"] = position->line;
        if (position->column)
            place["region"]["startColumn"] = *position->column;
    }
    return {{"physicalLocation", std::move(place)}};
}

/// What compilers say of one row's source.
class Findings {
public:
    void add(const Result& result) {
        const std::string compiler = full_name(result.compiler);
        for (const std::string& text : result.errors)
            add(Outcome::errors, text, position_of(text), compiler);
        for (const std::string& text : result.warnings)
            add(WARNINGS, text, position_of(text), compiler);
        const bool told = result.outcome == Outcome::compiled ||
                          (result.outcome == Outcome::errors && !result.errors.empty());
        if (!told)
            add(result.outcome, description(result), std::nullopt, compiler);
    }

    template <typename Visit>
    void for_each_json(const Matrix::Row& row, Visit visit) const {
        for (const Finding& finding : findings_)
            visit(json(finding, row));
    }

private:
    struct Finding {
        Outcome rule;
        std::string text;
        std::optional<Position> position;
        std::vector<std::string> compilers;
    };

    static std::string description(const Result& result) {
        std::string text = rule_of(result.outcome).description;
        for (const std::string& more : {result.detail, result.printed})
            text += (more.empty() ? "" : "\n") + more;
        return text;
    }

    void add(Outcome rule, const std::string& text, const std::optional<Position>& position,
             const std::string& compiler) {
        const auto [entry, added] = numbers_.try_emplace({rule, text}, findings_.size());
        if (added)
            findings_.push_back({rule, text, position, {}});
        std::vector<std::string>& compilers = findings_[entry->second].compilers;
        // A compiler may say the same twice.
        if (compilers.empty() || compilers.back() != compiler)
            compilers.push_back(compiler);
    }

    static ordered_json json(const Finding& finding, const Matrix::Row& row) {
        ordered_json properties{{"stage", row.stage}, {"compilers", finding.compilers}};
        if (!row.defines.empty())
            properties["defines"] = row.defines;
        if (!row.kernels.empty())
            properties["kernels"] = row.kernels;
        const Rule& rule = rule_of(finding.rule);
        return {{"ruleId", rule.id},
                {"ruleIndex", static_cast<std::size_t>(finding.rule)},
                {"level", rule.level},
                {"message", {{"text", message_text(finding.text)}}},
                {"locations", ordered_json::array({location(row.source, finding.position)})},
                {"properties", std::move(properties)}};
    }

    std::vector<Finding> findings_;
    std::map<std::pair<Outcome, std::string>, std::size_t> numbers_;
};

} // namespace

void write_sarif(const Result_source& results, std::ostream& out) {
    out << "{\"$schema\":\"https://docs.oasis-open.org/sarif/sarif/v2.1.0/os/schemas/"
           "sarif-schema-2.1.0.json\",\n\"version\":\"2.1.0\",\n\"runs\":[{\"tool\":"
        << dump({{"driver", {{"name", "vexacm"}, {"rules", rules()}}}})
        << ",\n\"columnKind\":\"unicodeCodePoints\",\n\"results\":[";

    Matrix matrix;
    Findings findings;
    std::size_t row = 0;
    const char* separator = "\n";
    const auto write_findings = [&] {
        if (matrix.rows().empty())
            return;
        findings.for_each_json(matrix.rows()[row], [&](const ordered_json& json) {
            out << separator << dump(json);
            separator = ",\n";
        });
        findings = {};
    };
    bool successful = true;
    results.for_each([&](const Result& result) {
        const Matrix::Place place = matrix.add(result, "");
        if (place.row != row) {
            write_findings();
            row = place.row;
        }
        findings.add(result);
        successful = successful &&
                     (result.outcome == Outcome::compiled || result.outcome == Outcome::errors);
    });
    write_findings();
    out << "],\n\"invocations\":" << dump({{{"executionSuccessful", successful}}}) << "}]}\n";
}

} // namespace vexacm_tool
