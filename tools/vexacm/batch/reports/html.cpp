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

struct Hash {
    std::size_t operator()(const std::string& text) const { return std::hash<std::string>()(text); }
    std::size_t operator()(const std::vector<std::string>& texts) const {
        std::size_t hash = texts.size();
        for (const std::string& text : texts)
            hash = hash * 31 + (*this)(text);
        return hash;
    }
};

/// Values that are written once. Elsewhere their numbers stand for them.
template <typename Value>
class Pool {
public:
    std::size_t number(const Value& value) {
        const auto [entry, added] = numbers_.try_emplace(value, values_.size());
        if (added)
            values_.push_back(&entry->first);
        return entry->second;
    }

    const std::vector<const Value*>& values() const { return values_; }

private:
    std::unordered_map<Value, std::size_t, Hash> numbers_;
    std::vector<const Value*> values_;
};

struct Pools {
    Pool<std::string> texts;
    Pool<std::string> diagnostics;
    Pool<std::vector<std::string>> table_rows;
    Pool<std::string> sources;
};

template <typename Value>
std::string numbers(const std::vector<Value>& values, Pool<Value>& pool) {
    std::string array;
    for (const Value& value : values)
        array += (array.empty() ? "" : ",") + std::to_string(pool.number(value));
    return '[' + array + ']';
}

// What the page shows of a result behind its outcome, as the rest of an array.
std::string shown(const Result& result, Pools& pools) {
    // One after the other: the numbers that values get depend on it.
    std::string rest = std::to_string(pools.texts.number(result.detail));
    rest += ',' + numbers(result.errors, pools.diagnostics);
    rest += ',' + numbers(result.warnings, pools.diagnostics);
    rest += ',' + numbers(result.tables, pools.table_rows);
    rest += ',' + std::to_string(result.binary_size);
    rest += ',' + std::to_string(pools.texts.number(result.printed));
    return rest + ']';
}

// "name":[...], a line for each item.
template <typename Items, typename To_json>
void write_member(const char* name, const Items& items, std::ostream& out, To_json to_json) {
    out << '"' << name << "\":[";
    const char* separator = "\n";
    for (const auto& item : items) {
        out << separator << to_json(item);
        separator = ",\n";
    }
    out << "],\n";
}

// With its place, where the text names one: ["text", line, column].
ordered_json diagnostic(const std::string& text) {
    auto array = ordered_json::array({text});
    if (const auto position = position_of(text)) {
        array.push_back(position->line);
        if (position->column)
            array.push_back(*position->column);
    }
    return array;
}

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

ordered_json compiler(const Compiler_name& name) {
    return {{"driver", name.driver},
            {"core", name.core},
            {"revision", name.revision},
            {"api", name.api},
            {"version", name.version}};
}

std::vector<const char*> outcome_names() {
    std::vector<const char*> names;
    for (std::size_t i = 0; i <= static_cast<std::size_t>(Outcome::not_run); ++i)
        names.push_back(name(static_cast<Outcome>(i)));
    return names;
}

ordered_json cells(const Matrix::Row& row, const std::vector<std::vector<std::size_t>>& columns) {
    auto array = ordered_json::array();
    for (const std::vector<std::size_t>& column : columns) {
        const std::uint32_t cell = Matrix::cell(row, column.front());
        array.push_back(cell == Matrix::NO_JOB ? -1 : static_cast<std::int64_t>(cell));
    }
    return array;
}

void write_rows(const Matrix& matrix, Pool<std::string>& sources, std::ostream& out) {
    const auto columns = matrix.equal_compilers();
    write_member("rows", matrix.rows(), out, [&](const Matrix::Row& row) {
        return json({{"source", sources.number(row.source)},
                     {"stage", row.stage},
                     {"defines", row.defines},
                     {"kernels", row.kernels},
                     {"cells", cells(row, columns)}});
    });
    write_member("columns", columns, out, [](const auto& members) { return json(members); });
}

void write_data(const Matrix& matrix, Pools& pools, std::ostream& out) {
    const auto pooled = [](const auto* value) { return json(*value); };
    write_member("compilers", matrix.compilers(), out,
                 [](const Compiler_name& name) { return json(compiler(name)); });
    write_member("texts", pools.texts.values(), out, pooled);
    write_member("diagnostics", pools.diagnostics.values(), out,
                 [](const std::string* text) { return json(diagnostic(*text)); });
    write_member("table_rows", pools.table_rows.values(), out, pooled);
    write_member("results", matrix.contents(), out, [](const Matrix::Content* content) {
        return '[' + std::to_string(static_cast<std::size_t>(content->first)) + ',' +
               content->second;
    });
    write_rows(matrix, pools.sources, out);
    write_member("sources", pools.sources.values(), out, pooled);
    out << "\"outcomes\":" << json(outcome_names());
}

// Script elements that are no script, but text for scripts to read.
void write_sources(const std::vector<const std::string*>& names, std::ostream& out) {
    for (std::size_t i = 0; i < names.size(); ++i)
        out << "<script type=\"application/json\" id=\"source-" << i << "\">"
            << json(source_text(*names[i])) << "</script>\n";
}

} // namespace

void write_html(const Result_source& results, std::ostream& out) {
    Matrix matrix;
    Pools pools;
    results.for_each([&](const Result& result) { matrix.add(result, shown(result, pools)); });
    out << std::string_view(BEFORE_DATA, sizeof BEFORE_DATA)
        << "<script type=\"application/json\" id=\"data\">{\n";
    write_data(matrix, pools, out);
    out << "}</script>\n";
    write_sources(pools.sources.values(), out);
    out << std::string_view(BEHIND_DATA, sizeof BEHIND_DATA);
}

} // namespace vexacm_tool
