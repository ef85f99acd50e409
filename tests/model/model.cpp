// SPDX-License-Identifier: MIT
#include "model.hpp"

#include <stdexcept>

namespace model {

namespace {

const char* const NOT_INITIALISED = "Compiler Manager Error: Please call "
                                    "vexacm_initialize_librariesbefore using other functions.";

bool equal_if_given(const Text& filter, const std::string& value) {
    return !filter || *filter == value;
}

bool matches(const Entry& entry, const List_compilers& filters) {
    return equal_if_given(filters.driver_name, entry.driver_name) &&
           equal_if_given(filters.core_name, entry.core_name) &&
           equal_if_given(filters.core_revision, entry.core_revision) &&
           equal_if_given(filters.api_name, entry.api_name) &&
           equal_if_given(filters.binary_output, entry.binary_output ? "true" : "false") &&
           filters.version <= entry.highest_version;
}

} // namespace

Manager::Manager(const Directory& that) : directory(that) {
    for (const Plugin& plugin : directory.plugins)
        plugins.emplace_back(plugin);
}

Reply Manager::answer(const Request& request) {
    Seen seen;
    const std::string result =
        std::visit([&](const auto& that) { return answer(that, seen); }, request);
    return {result, seen.err, seen.log};
}

void Manager::adopt_order(const std::vector<std::string>& identities) {
    model::adopt_order(*catalogue, identities);
}

bool Manager::initialising_throws() const {
    std::vector<Steered> copies = plugins;
    Seen ignored;
    try {
        build(directory, copies, ignored);
    } catch (const std::logic_error&) {
        return true;
    }
    return false;
}

std::string Manager::answer(const Initialise&, Seen& seen) {
    try {
        catalogue = build(directory, plugins, seen);
    } catch (const std::invalid_argument& problem) {
        return std::string("invalid argument: ") + problem.what();
    } catch (const std::out_of_range& problem) {
        return std::string("out of range: ") + problem.what();
    }
    return "true";
}

std::string Manager::answer(const Release&, Seen& seen) {
    if (catalogue)
        catalogue->close(true, seen);
    catalogue.reset();
    return "";
}

std::string Manager::answer(const Manager_version&, Seen& seen) {
    if (catalogue)
        return "4.0.2";
    seen.say(NOT_INITIALISED);
    return "untouched";
}

std::string Manager::answer(const List_compilers& request, Seen& seen) {
    if (!catalogue) {
        seen.say("Please call vexacm_initialize_libraries before trying to get compilers.");
        return "untouched";
    }
    if (request.null_compilers || request.null_count) {
        seen.say("Compiler Manager Error: NULL inputs passed to get_compilers");
        return "untouched";
    }
    std::vector<unsigned> ids;
    for (std::size_t i = 0; i < catalogue->entries.size(); ++i)
        if (matches(catalogue->entries[i], request))
            ids.push_back(static_cast<unsigned>(i));
    return shown(ids);
}

std::string Manager::answer(const Release_list&, Seen& seen) {
    if (catalogue)
        return "null";
    seen.say("Please call vexacm_initialize_libraries before trying to release compilers.");
    return "untouched";
}

std::string Manager::answer(const Release_outputs&, Seen& seen) {
    seen.say(NOT_INITIALISED);
    return "untouched";
}

std::string Manager::answer(const Ask& request, Seen& seen) {
    const bool is_text =
        request.property <= Property::api_name || request.property == Property::extensions;
    if (!catalogue) {
        seen.say(NOT_INITIALISED);
        if (is_text)
            return "null";
        return request.property == Property::highest_version ? "0" : "false";
    }
    Entry& entry = catalogue->entries[request.id];
    switch (request.property) {
    case Property::driver_name:
        return shown(Text(entry.driver_name));
    case Property::core_name:
        return shown(Text(entry.core_name));
    case Property::core_revision:
        return shown(Text(entry.core_revision));
    case Property::api_name:
        return shown(Text(entry.api_name));
    case Property::highest_version:
        return std::to_string(entry.highest_version);
    case Property::extensions:
        return shown(Text(extensions(*catalogue, entry, seen)));
    case Property::binary_output:
        return shown(entry.binary_output);
    case Property::prerotate:
        return shown(entry.prerotate);
    }
    throw std::logic_error("no such property");
}

std::string Manager::answer(const Compile& request, Seen& seen) {
    if (!catalogue) {
        seen.say("Please call vexacm_initialize_libraries before trying to compile.");
        return "false, untouched";
    }
    const Compiled compiled = compile(*catalogue, catalogue->entries[request.id], request, seen);
    if (request.null_outputs)
        return "false";
    if (compiled.done)
        return "true, " + shown(compiled.outputs);
    return "false, zeroed";
}

} // namespace model
