// SPDX-License-Identifier: MIT
#include "no_match.hpp"

#include "failure.hpp"
#include "table.hpp"

#include <algorithm>
#include <filesystem>
#include <vector>

namespace vexacm_tool {

namespace {

using vexacm::Compiler;
using vexacm::Compiler_ids;
using vexacm::Filters;

constexpr std::size_t SHOWN_VALUES = 8;

using Property = std::string (*)(const Compiler&);

struct Text_filter {
    const char* option;
    std::optional<std::string> Filters::*wanted;
    Property property;
};

const Text_filter TEXT_FILTERS[] = {
    {"--api", &Filters::api, [](const Compiler& compiler) -> std::string { return compiler.api; }},
    {"--driver", &Filters::driver,
     [](const Compiler& compiler) -> std::string { return compiler.driver; }},
    {"--core", &Filters::core,
     [](const Compiler& compiler) -> std::string { return compiler.core; }},
    {"--revision", &Filters::revision,
     [](const Compiler& compiler) -> std::string { return compiler.revision; }},
    {"--binary-output", &Filters::binary_output,
     [](const Compiler& compiler) -> std::string {
         return compiler.binary_output ? "true" : "false";
     }},
};

std::string version(const Compiler& compiler) {
    return std::to_string(compiler.version);
}

// What the compilers that pass have, each value once, in the order of the IDs.
std::string values(const Filters& filters, Property property) {
    std::vector<std::string> found;
    for (const unsigned int id : Compiler_ids(filters)) {
        const std::string value = property(Compiler(id));
        if (std::find(found.begin(), found.end(), value) == found.end())
            found.push_back(value);
    }
    std::string list;
    for (std::size_t i = 0; i < std::min(found.size(), SHOWN_VALUES); ++i)
        list += (i == 0 ? "" : ", ") + found[i];
    return list + (found.size() > SHOWN_VALUES ? ", ..." : "");
}

// Of filters that no compiler passes, added one by one, the one that leaves none.
std::string last_straw(const Filters& filters) {
    Filters passed;
    std::string shown = "with";
    const auto tell = [&shown, &passed](Property property) {
        return shown + " none is left of " + values(passed, property);
    };
    for (const Text_filter& filter : TEXT_FILTERS) {
        const std::optional<std::string>& wanted = filters.*filter.wanted;
        if (!wanted)
            continue;
        shown += std::string{" "} + filter.option + " '" + *wanted + "'";
        Filters next = passed;
        next.*filter.wanted = wanted;
        if (Compiler_ids(next).empty())
            return tell(filter.property);
        passed = next;
    }
    shown += " --min-version " + std::to_string(filters.min_version);
    return tell(version);
}

} // namespace

std::string why_none(const Filters& filters, const std::string& directory) {
    if (!Compiler_ids().empty())
        return one_line(last_straw(filters));
    std::error_code unknown;
    if (!std::filesystem::is_directory(directory, unknown))
        return "there is no directory '" + directory + "': name one with --plugins";
    return "'" + directory + "' has no usable plug-in in openglessl or opencl";
}

Compiler_ids some_compilers(const Filters& filters, const std::string& directory) {
    Compiler_ids ids(filters);
    if (ids.empty())
        throw Failure{Exit_status::no_compiler,
                      "no compiler matches: " + why_none(filters, directory)};
    return ids;
}

} // namespace vexacm_tool
