// SPDX-License-Identifier: MIT
#include "depfile.hpp"

#include "failure.hpp"

#include <algorithm>
#include <string_view>

namespace vexacm_tool {

namespace {

// Bytes that both read as they are, and those that both read behind the same sign.
// Everything else ends a name, is a pattern, or is quoted in another way by each.
bool is_plain(char byte) {
    const auto in = [byte](char first, char last) { return first <= byte && byte <= last; };
    return in('a', 'z') || in('A', 'Z') || in('0', '9') || static_cast<unsigned char>(byte) > 127 ||
           std::string_view("_-./+,@!{}()%~]").find(byte) != std::string_view::npos;
}

char sign_before(char byte) {
    return byte == '$' ? '$' : byte == ' ' || byte == '#' ? '\\' : '\0';
}

bool is_readable(std::string_view name) {
    const auto is_written = [](char byte) { return is_plain(byte) || sign_before(byte) != '\0'; };
    return !name.empty() && std::all_of(name.begin(), name.end(), is_written) &&
           name.front() != '~' && name.back() != ' ' && // a home folder, the end of the line
           (name.back() != ')' || name.find('(') == std::string_view::npos); // one of an archive
}

// Make has patterns there, and names of its own such as .PHONY.
bool is_readable_target(std::string_view name) {
    return is_readable(name) && name.find('%') == std::string_view::npos &&
           !(name.size() > 1 && name[0] == '.' && name[1] >= 'A' && name[1] <= 'Z');
}

std::string written(std::string_view name, bool is_readable) {
    if (!is_readable)
        throw Failure{Exit_status::wrong_use, "make and Ninja cannot both read '" +
                                                  std::string(name) + "' in a dependency file"};
    std::string text;
    for (const char byte : name) {
        if (const char sign = sign_before(byte))
            text += sign;
        text += byte;
    }
    return text;
}

} // namespace

std::string dependency_rule(const std::string& target, const std::vector<std::string>& sources) {
    std::string rule = written(target, is_readable_target(target)) + ':';
    // To make, a file that is gone is an error unless it is a target as well.
    std::string targets;
    for (const std::string& source : sources) {
        const std::string name = written(source, is_readable_target(source));
        rule += " \\\n  " + name;
        targets += name + ":\n";
    }
    return rule + '\n' + targets;
}

} // namespace vexacm_tool
