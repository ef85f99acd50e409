// SPDX-License-Identifier: MIT
#include "html.hpp"

#include "matrix.hpp"
#include "position.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string_view>

namespace vexacm_tool {

namespace {

using nlohmann::ordered_json;

constexpr char BEFORE_DATA[] = {
#include "page_before_data.inc"
};
constexpr char BEHIND_DATA[] = {
#include "page_behind_data.inc"
};

// JSON that may stand in a script element: no bytes but ASCII, and no "<" that could end it.
std::string json(const ordered_json& value) {
    const std::string text = value.dump(-1, ' ', true, ordered_json::error_handler_t::replace);
    std::string safe;
    for (const char character : text) {
        if (character == '<')
            safe += "\\u003c";
        else
            safe += character;
    }
    return safe;
}

/// Values as JSON, each once. Elsewhere their numbers stand for them.
class Pool {
public:
    std::size_t number(const ordered_json& value) {
        const auto [entry, added] = numbers_.try_emplace(json(value), values_.size());
        if (added)
            values_.push_back(&entry->first);
        return entry->second;
    }

    const std::vector<const std::string*>& values() const { return values_; }

private:
    std::unordered_map<std::string, std::size_t> numbers_;
    std::vector<const std::string*> values_;
};

struct Pools {
    Pool texts;
    Pool diagnostics;
    Pool table_rows;

    // What the page shows of a result behind its outcome, as the rest of an array.
    std::string shown(const Result& result) {
        auto rows = ordered_json::array();
        for (const std::vector<std::string>& row : result.tables)
            rows.push_back(table_rows.number(row));
        const std::string array =
            json({texts.number(result.detail), numbers(result.errors), numbers(result.warnings),
                  rows, result.binary_size, texts.number(result.printed)});
        return array.substr(1);
    }

private:
    // With the place, where the text names one: ["text", line, column].
    ordered_json numbers(const std::vector<std::string>& diagnostics_of_job) {
        auto array = ordered_json::array();
        for (const std::string& text : diagnostics_of_job) {
            ordered_json diagnostic = ordered_json::array({text});
            if (const auto position = position_of(text)) {
                diagnostic.push_back(position->line);
                if (position->column)
                    diagnostic.push_back(*position->column);
            }
            array.push_back(diagnostics.number(diagnostic));
        }
        return array;
    }
};

// "name":[...], a line for each item.
template <typename Items, typename To_json>
void write_member(const char* name, const Items& items, To_json to_json, std::ostream& out) {
    out << '"' << name << "\":[";
    const char* separator = "\n";
    for (const auto& item : items) {
        out << separator << to_json(item);
        separator = ",\n";
    }
    out << "],\n";
}

/// Numbers the sources' names, each once, in the order of the rows.
class Sources {
public:
    std::size_t number(const std::string& source) {
        const auto [entry, added] = numbers_.try_emplace(source, names_.size());
        if (added)
            names_.push_back(&entry->first);
        return entry->second;
    }

    const std::vector<const std::string*>& names() const { return names_; }

private:
    std::unordered_map<std::string, std::size_t> numbers_;
    std::vector<const std::string*> names_;
};

ordered_json source_text(const std::string& name) {
    constexpr std::uintmax_t LARGEST = 1 << 20;
    std::error_code error;
    const auto status = std::filesystem::status(name, error);
    if (error)
        return {{"error", error.message()}};
    // Reading a pipe would wait for a writer.
    if (!std::filesystem::is_regular_file(status))
        return {{"error", "not a regular file"}};
    const std::uintmax_t size = std::filesystem::file_size(name, error);
    if (error)
        return {{"error", error.message()}};
    if (size > LARGEST)
        return {{"error", "longer than 1 MiB"}};
    std::ifstream file(name, std::ios::binary);
    std::string text(size, '\0');
    if (!file || file.read(text.data(), static_cast<std::streamsize>(size)).bad())
        return {{"error", std::strerror(errno)}};
    text.resize(static_cast<std::size_t>(file.gcount()));
    return {{"text", text}};
}

// A script element that is no script, but text for scripts to read.
void write_sources(const Sources& sources, std::ostream& out) {
    std::size_t number = 0;
    for (const std::string* name : sources.names())
        out << "<script type=\"application/json\" id=\"source-" << number++ << "\">"
            << json(source_text(*name)) << "</script>\n";
}

void write_data(const Matrix& matrix, const Pools& pools, Sources& sources, std::ostream& out) {
    const auto as_it_is = [](const std::string* value) -> const std::string& { return *value; };
    const auto columns = matrix.equal_compilers();

    auto outcomes = ordered_json::array();
    for (std::size_t i = 0; i <= static_cast<std::size_t>(Outcome::not_run); ++i)
        outcomes.push_back(name(static_cast<Outcome>(i)));
    out << "{\"outcomes\":" << json(outcomes) << ",\n";
    write_member(
        "compilers", matrix.compilers(),
        [](const Compiler_name& compiler) {
            return json({{"driver", compiler.driver},
                         {"core", compiler.core},
                         {"revision", compiler.revision},
                         {"api", compiler.api},
                         {"version", compiler.version}});
        },
        out);
    write_member("texts", pools.texts.values(), as_it_is, out);
    write_member("diagnostics", pools.diagnostics.values(), as_it_is, out);
    write_member("table_rows", pools.table_rows.values(), as_it_is, out);
    write_member(
        "results", matrix.contents(),
        [](const Matrix::Content* content) {
            return '[' + std::to_string(static_cast<std::size_t>(content->first)) + ',' +
                   content->second;
        },
        out);
    write_member(
        "rows", matrix.rows(),
        [&](const Matrix::Row& row) {
            auto cells = ordered_json::array();
            for (const std::vector<std::size_t>& column : columns) {
                const std::uint32_t cell = Matrix::cell(row, column.front());
                cells.push_back(cell == Matrix::NO_JOB ? -1 : static_cast<std::int64_t>(cell));
            }
            return json({{"source", sources.number(row.source)},
                         {"stage", row.stage},
                         {"defines", row.defines},
                         {"kernels", row.kernels},
                         {"cells", cells}});
        },
        out);
    write_member(
        "sources", sources.names(), [](const std::string* name) { return json(*name); }, out);
    out << "\"columns\":" << json(columns) << "}";
}

} // namespace

void write_html(const Result_source& results, std::ostream& out) {
    Matrix matrix;
    Pools pools;
    results.for_each([&](const Result& result) { matrix.add(result, pools.shown(result)); });
    Sources sources;
    out << std::string_view(BEFORE_DATA, sizeof BEFORE_DATA)
        << "<script type=\"application/json\" id=\"data\">";
    write_data(matrix, pools, sources, out);
    out << "</script>\n";
    write_sources(sources, out);
    out << std::string_view(BEHIND_DATA, sizeof BEHIND_DATA);
}

} // namespace vexacm_tool
