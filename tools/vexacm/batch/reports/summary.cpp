// SPDX-License-Identifier: MIT
#include "summary.hpp"

#include "compiler_names.hpp"
#include "text.hpp"

#include <algorithm>
#include <array>
#include <numeric>
#include <ostream>

namespace vexacm_tool {

namespace {

using Numbers = Compiler_names::Numbers;

constexpr std::size_t OUTCOMES = static_cast<std::size_t>(Outcome::not_run) + 1;
using Counts = std::array<std::size_t, OUTCOMES>;

// A cell of the matrix, by outcome.
constexpr std::string_view SIGNS = ".ERNCXTMG?!-";
static_assert(SIGNS.size() == OUTCOMES);
constexpr char WARNED = 'w'; // compiled, with warnings
constexpr char NO_SIGN = ' ';

char sign_of(const Result& result) {
    if (result.outcome == Outcome::compiled && !result.warnings.empty())
        return WARNED;
    return SIGNS[static_cast<std::size_t>(result.outcome)];
}

// Whether an outcome says something about the source. A compiler that was given up, or a run that
// was interrupted, would be told of source after source.
bool is_failure(Outcome outcome) {
    return outcome != Outcome::compiled && outcome != Outcome::given_up &&
           outcome != Outcome::not_run;
}

bool is_failure(char sign) {
    return sign != WARNED && sign != NO_SIGN && is_failure(static_cast<Outcome>(SIGNS.find(sign)));
}

std::string words(Outcome outcome) {
    std::string text(name(outcome));
    std::replace(text.begin(), text.end(), '_', ' ');
    return text;
}

/// What failed with the source of a row, told once for all compilers it holds for.
class Failures {
public:
    void add(const Result& result, std::size_t compiler) {
        compilers_.push_back(compiler);
        if (!is_failure(result.outcome))
            return;
        const std::string headline = headline_of(result);
        const std::string text = text_of(result);
        const auto same = std::find_if(failures_.begin(), failures_.end(), [&](const Failure& one) {
            return one.headline == headline && one.text == text;
        });
        if (same == failures_.end())
            failures_.push_back({headline, text, {compiler}});
        else
            same->compilers.push_back(compiler);
    }

    void write(const Matrix& matrix, const Matrix::Row& row, std::ostream& out) const {
        if (failures_.empty())
            return;
        const Compiler_names names(matrix, compilers_);
        out << terminal_line(title(row)) << '\n';
        for (const Failure& failure : failures_)
            out << failure.headline << names.text("    with ", failure.compilers) << failure.text;
        out << '\n';
    }

private:
    struct Failure {
        std::string headline;
        std::string text;
        Numbers compilers;
    };

    static std::string headline_of(const Result& result) {
        return "  " + words(result.outcome) +
               (result.detail.empty() ? "" : ": " + terminal_line(result.detail)) + '\n';
    }

    static std::string text_of(const Result& result) {
        std::string text;
        const auto add_line = [&text](std::string_view line) {
            text += "    " + terminal_line(line) + '\n';
        };
        for (const std::string& error : result.errors)
            for_each_line(error, add_line);
        for_each_line(result.printed, add_line);
        return text;
    }

    Numbers compilers_;
    std::vector<Failure> failures_;
};

// A, B ... Z, AA, AB ...
std::string column_name(std::size_t number) {
    std::string name;
    for (++number; number > 0; number = (number - 1) / 26)
        name.insert(name.begin(), static_cast<char>('A' + (number - 1) % 26));
    return name;
}

/// The matrix as it is printed: equal compilers share a column, and sources
/// without a failure that are equal in all columns share a line.
class Printed_matrix {
public:
    explicit Printed_matrix(const Matrix& matrix)
        : matrix_(matrix), columns_(matrix.equal_compilers()),
          column_width_(column_name(columns_.size() - 1).size() + 1) {
        for (const Matrix::Row& row : matrix.rows())
            add_line(signs(row), title(row));
    }

    void write(std::ostream& out) const {
        write_legend(out);
        out << '\n';
        for (std::size_t i = 0; i < columns_.size(); ++i)
            out << padded(column_name(i));
        out << "source\n";
        write_lines(failed_, out);
        write_lines(others_, out);
        write_signs(out);
    }

private:
    struct Line {
        std::string signs;
        std::string source;
        std::size_t sources = 1;
    };

    std::string signs(const Matrix::Row& row) const {
        std::string signs;
        for (const Numbers& column : columns_) {
            const std::uint32_t cell = Matrix::cell(row, column.front());
            signs += cell == Matrix::NO_JOB ? NO_SIGN : matrix_.content(cell).second.front();
        }
        return signs;
    }

    void add_line(const std::string& signs, const std::string& source) {
        if (std::any_of(signs.begin(), signs.end(), [](char sign) { return is_failure(sign); })) {
            failed_.push_back({signs, source});
            return;
        }
        const auto [same, added] = lines_.try_emplace(signs, others_.size());
        if (added)
            others_.push_back({signs, source});
        else
            ++others_[same->second].sources;
    }

    std::string padded(std::string text) const {
        text.resize(column_width_, ' ');
        return text;
    }

    void write_legend(std::ostream& out) const {
        Numbers all(matrix_.compilers().size());
        std::iota(all.begin(), all.end(), std::size_t{0});
        const Compiler_names names(matrix_, all);
        for (std::size_t i = 0; i < columns_.size(); ++i)
            out << names.text(padded(column_name(i)), columns_[i]);
    }

    void write_lines(const std::vector<Line>& lines, std::ostream& out) const {
        for (const Line& line : lines) {
            for (const char sign : line.signs)
                out << padded({sign});
            out << (line.sources == 1 ? terminal_line(line.source)
                                      : std::to_string(line.sources) + " sources")
                << '\n';
        }
    }

    bool is_used(char sign) const {
        const auto has = [sign](const Line& line) {
            return line.signs.find(sign) != std::string::npos;
        };
        return std::any_of(failed_.begin(), failed_.end(), has) ||
               std::any_of(others_.begin(), others_.end(), has);
    }

    void write_signs(std::ostream& out) const {
        std::vector<std::string> meanings;
        for (std::size_t i = 0; i < OUTCOMES; ++i)
            if (is_used(SIGNS[i]))
                meanings.push_back(SIGNS[i] + (' ' + words(static_cast<Outcome>(i))));
        if (is_used(WARNED))
            meanings.push_back(WARNED + std::string(" compiled with warnings"));
        out << '\n' << wrapped_list("", meanings, 0);
    }

    const Matrix& matrix_;
    std::vector<Numbers> columns_;
    std::size_t column_width_;
    std::vector<Line> failed_;
    std::vector<Line> others_;
    std::unordered_map<std::string, std::size_t> lines_; // numbers of others_
};

void write_counts(const Counts& counts, std::ostream& out) {
    const std::size_t jobs = std::accumulate(counts.begin(), counts.end(), std::size_t{0});
    std::vector<std::string> items;
    for (std::size_t i = 0; i < OUTCOMES; ++i)
        if (counts[i] > 0)
            items.push_back(std::to_string(counts[i]) + ' ' + words(static_cast<Outcome>(i)));
    const std::string all = std::to_string(jobs) + (jobs == 1 ? " job: " : " jobs: ");
    out << wrapped_list(all, items, all.size());
}

} // namespace

void write_summary(const Result_source& results, std::ostream& out) {
    Matrix matrix;
    Counts counts{};
    Failures failures;
    std::size_t row = 0;
    results.for_each([&](const Result& result) {
        const Matrix::Place place = matrix.add(result, {sign_of(result)});
        if (place.row != row) {
            failures.write(matrix, matrix.rows()[row], out);
            failures = {};
            row = place.row;
        }
        failures.add(result, place.compiler);
        ++counts[static_cast<std::size_t>(result.outcome)];
    });
    if (matrix.rows().empty()) {
        out << "no jobs\n";
        return;
    }
    failures.write(matrix, matrix.rows()[row], out);
    Printed_matrix(matrix).write(out);
    out << '\n';
    write_counts(counts, out);
}

} // namespace vexacm_tool
