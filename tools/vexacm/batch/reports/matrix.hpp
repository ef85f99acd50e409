// SPDX-License-Identifier: MIT
#pragma once

#include "../result.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vexacm_tool {

/// Sources by compilers, gathered from results in job order. What a report
/// shows of a result is kept once for all jobs in which it is the same.
class Matrix {
public:
    using Content = std::pair<Outcome, std::string>;

    /// A source as it was compiled.
    struct Row {
        std::string source;
        std::string stage;
        std::vector<std::string> defines;
        std::vector<std::string> kernels;
        std::vector<std::uint32_t> cells; ///< one for each compiler, or fewer: see cell()
    };

    /// In place of a content, where a source was not for a compiler.
    static constexpr std::uint32_t NO_JOB = UINT32_MAX;

    struct Place {
        std::size_t row;
        std::size_t compiler;
    };

    /// Gives where it is now; the row is the last.
    Place add(const Result& result, std::string shown);

    const std::vector<Row>& rows() const { return rows_; }
    const std::vector<Compiler_name>& compilers() const { return compilers_; }
    const Content& content(std::uint32_t cell) const { return *contents_[cell]; }
    const std::vector<const Content*>& contents() const { return contents_; }

    static std::uint32_t cell(const Row& row, std::size_t compiler) {
        return compiler < row.cells.size() ? row.cells[compiler] : NO_JOB;
    }

    /// The compilers, as numbers, those that are equal in every row together.
    std::vector<std::vector<std::size_t>> equal_compilers() const;

private:
    std::size_t compiler_number(const Compiler_name& name);
    std::uint32_t content_number(Outcome outcome, std::string shown);

    std::vector<Row> rows_;
    std::vector<Compiler_name> compilers_;
    std::unordered_map<std::string, std::size_t> compiler_numbers_;
    std::map<Content, std::uint32_t> content_numbers_;
    std::vector<const Content*> contents_;
};

std::string full_name(const Compiler_name& compiler);

/// The row's source, with the definitions and kernels that tell it from others.
std::string title(const Matrix::Row& row);

} // namespace vexacm_tool
