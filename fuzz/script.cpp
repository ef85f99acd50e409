// SPDX-License-Identifier: MIT
#include "script.hpp"

#include <algorithm>
#include <cstdlib>

namespace {

std::vector<std::string> split(std::string_view text, char delimiter) {
    std::vector<std::string> parts(1);
    for (const char character : text)
        if (character == delimiter)
            parts.emplace_back();
        else
            parts.back() += character;
    return parts;
}

/// No text holds a zero byte: it would end there.
std::string decoded(const std::string& field) {
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        char character = field[i];
        if (character == '%' && i + 2 < field.size()) {
            character =
                static_cast<char>(std::strtoul(field.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        }
        if (character != '\0')
            text += character;
    }
    return text;
}

/// A count never exceeds what is there: a plug-in cannot break that promise and
/// live.
template <class Element>
std::uint32_t up_to(std::uint32_t count, const model::Array<Element>& array) {
    return std::min(count, static_cast<std::uint32_t>(array.elements.size()));
}

/// Counts come before or after what they count, and are cut at the end.
template <class Element>
void cut(model::Array<Element>& array) {
    if (array.count)
        array.count = up_to(*array.count, array);
}

} // namespace

model::Text Script::Line::text(std::size_t field) const {
    if (field >= fields.size())
        return "";
    if (fields[field] == "-")
        return std::nullopt;
    return decoded(fields[field]);
}

std::uint32_t Script::Line::number(std::size_t field) const {
    return static_cast<std::uint32_t>(std::strtoul(word(field).c_str(), nullptr, 10));
}

Script::Script(std::string_view input) {
    for (const std::string& text : split(input, '\n')) {
        Line line;
        const std::size_t blank = std::min(text.find(' '), text.size());
        line.directive = text.substr(0, blank);
        if (blank < text.size())
            line.fields = split(std::string_view(text).substr(blank + 1), '|');
        lines.push_back(line);
    }
}

namespace {

/// Reads one kind of section; a directive of another kind is not its own.
void read(model::Record& record, const std::string& directive, const model::Text& first,
          const model::Text& second, std::uint32_t number) {
    if (directive == "core")
        record.cores.elements.push_back({first, second});
    else if (directive == "pair")
        record.pair(first, second);
    else if (directive == "text")
        record.entries.elements.push_back(first);
    else if (directive == "binary")
        record.binary = number;
    else if (directive == "result")
        record.result = static_cast<int>(number);
    else if (directive == "num-cores")
        record.cores.count = number;
    else if (directive == "num-entries")
        record.entries.count = number;
    else if (directive == "null-cores")
        record.cores.null = true;
    else if (directive == "null-entries")
        record.entries.null = true;
}

/// The fake plug-in has room for so many.
const std::size_t MOST_LISTS = 64;

void read(model::Outcome& outcome, const std::string& directive, const model::Text& text,
          std::uint32_t number) {
    std::vector<model::Array<model::Text>>& lists = outcome.lists.elements;
    if (directive == "a")
        outcome.a.elements.push_back(text);
    else if (directive == "b")
        outcome.b.elements.push_back(text);
    else if (directive == "list" && lists.size() < MOST_LISTS)
        lists.emplace_back();
    else if (directive == "item" && !lists.empty())
        lists.back().elements.push_back(text);
    else if (directive == "num-items" && !lists.empty())
        lists.back().count = number;
    else if (directive == "null-items" && !lists.empty())
        lists.back().null = true;
    else if (directive == "bytes" && text)
        outcome.binary.elements.assign(text->begin(), text->end());
    else if (directive == "returns")
        outcome.result = static_cast<int>(number);
    else if (directive == "num-a")
        outcome.a.count = number;
    else if (directive == "num-b")
        outcome.b.count = number;
    else if (directive == "num-lists")
        outcome.lists.count = number;
    else if (directive == "num-bytes")
        outcome.binary.count = number;
    else if (directive == "null-a")
        outcome.a.null = true;
    else if (directive == "null-b")
        outcome.b.null = true;
    else if (directive == "null-lists")
        outcome.lists.null = true;
    else if (directive == "null-bytes")
        outcome.binary.null = true;
}

} // namespace

void Script::steer(model::Plugin& plugin) const {
    for (const Line& line : lines) {
        if (line.directive == "record" && line.number(0) > plugin.records.back().from_call &&
            line.number(0) <= 3) {
            plugin.records.emplace_back();
            plugin.records.back().from_call = line.number(0);
        } else if (line.directive == "api") {
            for (std::size_t i = 0; i < 3; ++i)
                plugin.version[i] = line.number(i);
        } else if (line.directive == "outputs") {
            plugin.outcomes.emplace_back();
            plugin.outcomes.back().word = line.word(0);
        } else if (!plugin.outcomes.empty()) {
            read(plugin.outcomes.back(), line.directive, line.text(0), line.number(0));
        } else {
            read(plugin.records.back(), line.directive, line.text(0), line.text(1), line.number(0));
        }
    }
    for (model::Record& record : plugin.records) {
        cut(record.cores);
        cut(record.entries);
    }
    for (model::Outcome& outcome : plugin.outcomes) {
        for (model::Array<model::Text>& list : outcome.lists.elements)
            cut(list);
        cut(outcome.lists);
        cut(outcome.binary);
        cut(outcome.a);
        cut(outcome.b);
    }
}

std::vector<model::Compile> Script::requests() const {
    std::vector<model::Compile> requests;
    for (const Line& line : lines) {
        if (line.directive == "compile") {
            model::Compile& request = requests.emplace_back();
            const std::string flags = line.word(3);
            const auto has = [&](char flag) { return flags.find(flag) != std::string::npos; };
            request.id = line.number(0);
            request.shader_type = line.text(1);
            request.source = line.text(2);
            request.binary_output = has('b');
            request.prerotate = has('p');
            request.null_outputs = has('o');
            request.num_kernel_names = has('n') ? -1 : 0;
            request.num_defines = has('d') ? -1 : 0;
        } else if (line.directive == "kernel" && !requests.empty()) {
            requests.back().kernel_names.push_back(line.word(0));
            requests.back().num_kernel_names =
                static_cast<int>(requests.back().kernel_names.size());
        } else if (line.directive == "define" && !requests.empty()) {
            requests.back().defines.push_back(line.word(0));
            requests.back().num_defines = static_cast<int>(requests.back().defines.size());
        }
    }
    return requests;
}
