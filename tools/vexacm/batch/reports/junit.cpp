// SPDX-License-Identifier: MIT
#include "junit.hpp"

#include "matrix.hpp"
#include "text.hpp"

#include <ostream>

namespace vexacm_tool {

namespace {

// XML 1.0 has no way to write the others.
bool is_allowed(char32_t code) {
    return code >= 0x20 ? code != 0xFFFE && code != 0xFFFF
                        : code == '\t' || code == '\n' || code == '\r';
}

// For elements and attributes, whose white space readers would change.
std::string escaped(std::string_view text) {
    std::string xml;
    while (!text.empty()) {
        const auto [code, length] = first_character(text);
        if (!is_allowed(code) || code == REPLACEMENT)
            xml += "\uFFFD";
        else if (code < 0x20 || code == '&' || code == '<' || code == '>' || code == '"')
            xml += "&#" + std::to_string(static_cast<unsigned int>(code)) + ';';
        else
            xml += text.substr(0, length);
        text.remove_prefix(length);
    }
    return xml;
}

// The same, with lines as they are.
std::string escaped_lines(std::string_view text) {
    std::string xml;
    for_each_line(text, [&xml](std::string_view line) { xml += escaped(line) + '\n'; });
    return xml.substr(0, xml.find_last_not_of('\n') + 1);
}

std::string lines(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts)
        for_each_line(text, [&all](std::string_view line) { all.append(line).append("\n"); });
    return all;
}

// What lists of cases show of one.
std::string message_of(const Result& result, const std::string& told) {
    if (!result.detail.empty())
        return result.detail;
    return told.empty() ? name(result.outcome) : told.substr(0, told.find('\n'));
}

std::string attribute(const char* name, const std::string& value) {
    return std::string(" ") + name + "=\"" + escaped(value) + '"';
}

enum class Verdict { passed, failed, error, skipped };

Verdict verdict_of(Outcome outcome) {
    switch (outcome) {
    case Outcome::compiled:
        return Verdict::passed;
    case Outcome::errors:
        return Verdict::failed;
    case Outcome::not_run:
        return Verdict::skipped;
    default:
        return Verdict::error;
    }
}

// An element; nothing in place of an empty one without attributes.
std::string element(const std::string& name, const std::string& attributes,
                    const std::string& text) {
    if (attributes.empty() && text.empty())
        return {};
    const std::string start = "      <" + name + attributes;
    return start + (text.empty() ? "/>\n" : '>' + text + "</" + name + ">\n");
}

std::string verdict_element(const Result& result) {
    const Verdict verdict = verdict_of(result.outcome);
    if (verdict == Verdict::passed)
        return {};
    if (verdict == Verdict::skipped)
        return element("skipped", attribute("message", "not run"), "");
    const std::string told = lines(result.errors);
    const std::string attributes =
        attribute("type", name(result.outcome)) + attribute("message", message_of(result, told));
    return element(verdict == Verdict::failed ? "failure" : "error", attributes,
                   escaped_lines(told));
}

// What stands in the case of a result.
std::string case_content(const Result& result) {
    return verdict_element(result) +
           element("system-out", "", escaped_lines(lines(result.warnings) + result.printed));
}

struct Counts {
    std::size_t tests = 0;
    std::size_t failures = 0;
    std::size_t errors = 0;
    std::size_t skipped = 0;

    void count(Outcome outcome) {
        const Verdict verdict = verdict_of(outcome);
        ++tests;
        failures += verdict == Verdict::failed;
        errors += verdict == Verdict::error;
        skipped += verdict == Verdict::skipped;
    }

    std::string attributes() const {
        return attribute("tests", std::to_string(tests)) +
               attribute("failures", std::to_string(failures)) +
               attribute("errors", std::to_string(errors)) +
               attribute("skipped", std::to_string(skipped));
    }
};

template <typename Visit>
void for_each_cell(const Matrix& matrix, std::size_t compiler, Visit visit) {
    for (const Matrix::Row& row : matrix.rows()) {
        const std::uint32_t cell = Matrix::cell(row, compiler);
        if (cell != Matrix::NO_JOB)
            visit(row, matrix.content(cell));
    }
}

void write_suite(const Matrix& matrix, std::size_t compiler, std::ostream& out) {
    Counts counts;
    for_each_cell(matrix, compiler, [&](const Matrix::Row&, const Matrix::Content& content) {
        counts.count(content.first);
    });
    const std::string name = full_name(matrix.compilers()[compiler]);
    out << "  <testsuite" << attribute("name", name) << counts.attributes() << ">\n";
    for_each_cell(matrix, compiler, [&](const Matrix::Row& row, const Matrix::Content& content) {
        out << "    <testcase" << attribute("classname", name) << attribute("name", title(row));
        if (content.second.empty())
            out << "/>\n";
        else
            out << ">\n" << content.second << "    </testcase>\n";
    });
    out << "  </testsuite>\n";
}

} // namespace

void write_junit(const Result_source& results, std::ostream& out) {
    Matrix matrix;
    Counts counts;
    results.for_each([&](const Result& result) {
        matrix.add(result, case_content(result));
        counts.count(result.outcome);
    });
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        << "<testsuites name=\"vexacm\"" << counts.attributes() << ">\n";
    for (std::size_t compiler = 0; compiler < matrix.compilers().size(); ++compiler)
        write_suite(matrix, compiler, out);
    out << "</testsuites>\n";
}

} // namespace vexacm_tool
