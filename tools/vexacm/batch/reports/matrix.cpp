// SPDX-License-Identifier: MIT
#include "matrix.hpp"

namespace vexacm_tool {

namespace {

bool is_of(const Matrix::Row& row, const Result& result) {
    return row.source == result.source && row.stage == result.stage &&
           row.defines == result.defines && row.kernels == result.kernels;
}

} // namespace

Matrix::Place Matrix::add(const Result& result, std::string shown) {
    const std::size_t compiler = compiler_number(result.compiler);
    // What is listed twice has two rows.
    if (rows_.empty() || !is_of(rows_.back(), result) || cell(rows_.back(), compiler) != NO_JOB)
        rows_.push_back({result.source, result.stage, result.defines, result.kernels, {}});
    std::vector<std::uint32_t>& cells = rows_.back().cells;
    if (cells.size() <= compiler)
        cells.resize(compiler + 1, NO_JOB);
    cells[compiler] = content_number(result.outcome, std::move(shown));
    return {rows_.size() - 1, compiler};
}

std::size_t Matrix::compiler_number(const Compiler_name& name) {
    std::string key;
    for (const std::string& part : {name.driver, name.core, name.revision, name.api})
        key.append(part).push_back('\0');
    key += std::to_string(name.version);
    const auto [entry, added] = compiler_numbers_.try_emplace(std::move(key), compilers_.size());
    if (added)
        compilers_.push_back(name);
    return entry->second;
}

std::uint32_t Matrix::content_number(Outcome outcome, std::string shown) {
    const auto next = static_cast<std::uint32_t>(contents_.size());
    const auto [entry, added] =
        content_numbers_.try_emplace(Content(outcome, std::move(shown)), next);
    if (added)
        contents_.push_back(&entry->first);
    return entry->second;
}

std::vector<std::vector<std::size_t>> Matrix::equal_compilers() const {
    // All start in one group. Each row takes groups apart; their order stays that of the first
    // compiler in each.
    std::vector<std::size_t> groups(compilers_.size(), 0);
    for (const Row& row : rows_) {
        std::map<std::pair<std::size_t, std::uint32_t>, std::size_t> parts;
        for (std::size_t i = 0; i < groups.size(); ++i)
            groups[i] = parts.try_emplace({groups[i], cell(row, i)}, parts.size()).first->second;
    }
    std::vector<std::vector<std::size_t>> members;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (members.size() <= groups[i])
            members.resize(groups[i] + 1);
        members[groups[i]].push_back(i);
    }
    return members;
}

std::string full_name(const Compiler_name& compiler) {
    return compiler.driver + ' ' + compiler.core + ' ' + compiler.revision + ' ' + compiler.api;
}

std::string title(const Matrix::Row& row) {
    std::string text = row.source;
    for (const std::string& define : row.defines)
        text += " -D " + define;
    for (const std::string& kernel : row.kernels)
        text += " --kernel " + kernel;
    return text;
}

} // namespace vexacm_tool
