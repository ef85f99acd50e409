// SPDX-License-Identifier: MIT
#include "diagnostics.hpp"

#include <string>

namespace glsl {
namespace {

bool starts_with(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool is_error(std::string_view line) {
    return starts_with(line, "ERROR: ") || starts_with(line, "INTERNAL ERROR: ") ||
           starts_with(line, "UNIMPLEMENTED: ");
}

bool is_warning(std::string_view line) {
    return starts_with(line, "WARNING: ") || starts_with(line, "NOTE: ");
}

// "ERROR: 2 compilation errors.  No code generated." says nothing that the list does not.
bool is_summary(std::string_view line) {
    return starts_with(line, "ERROR: ") &&
           line.find(" compilation errors.  No code generated.") != std::string_view::npos;
}

std::string_view without_trailing_blanks(std::string_view line) {
    return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

class Log_reader {
public:
    explicit Log_reader(plugin::Outputs& outputs) : outputs_(outputs) {}

    void read_line(std::string_view line) {
        if (line.empty() || is_summary(line))
            return;
        if (is_error(line))
            latest_ = &outputs_.errors.emplace_back(line);
        else if (is_warning(line))
            latest_ = &outputs_.warnings.emplace_back(line);
        else if (latest_ != nullptr)
            latest_->append("\n").append(line);
    }

private:
    plugin::Outputs& outputs_;
    std::string* latest_ = nullptr;
};

} // namespace

void add_diagnostics(std::string_view log, plugin::Outputs& outputs) {
    Log_reader reader(outputs);
    while (!log.empty()) {
        const std::size_t length = log.find('\n');
        reader.read_line(without_trailing_blanks(log.substr(0, length)));
        log.remove_prefix(length == std::string_view::npos ? log.size() : length + 1);
    }
}

} // namespace glsl
