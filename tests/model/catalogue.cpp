// SPDX-License-Identifier: MIT
#include "catalogue.hpp"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "standard_stoi.hpp"

namespace model {

namespace {

/// What a record tells about all compilers of its plug-in.
struct Reading {
    std::vector<std::string> types;
    std::vector<std::string> versions[2];   ///< OpenGL ES, OpenCL
    std::vector<std::string> extensions[2]; ///< likewise
    Text flexible_version;
    bool prerotate = false;
};

Reading read(const Record& record, Seen& seen) {
    Reading reading;
    for (const auto& [key, value] : pairs(record)) {
        if (key == "compiler_type")
            reading.types.push_back(value);
        else if (key == "openglessl_version")
            reading.versions[0].push_back(value);
        else if (key == "opencl_version")
            reading.versions[1].push_back(value);
        else if (key == "openglessl_extensions")
            reading.extensions[0].push_back(value);
        else if (key == "opencl_extensions")
            reading.extensions[1].push_back(value);
        else if (key == "flexible_version")
            reading.flexible_version = value;
        else if (key == "prerotate")
            reading.prerotate = reading.prerotate || value == "true";
        else if (key != "undefine" && key != "architecture")
            seen.say("Unknown flexible capability. Key: " + key + ", Value: " + value);
    }
    return reading;
}

bool is_usable(const Reading& reading, const Library& library, Seen& seen) {
    const std::string driver = "Driver '" + library.driver.name + "' ";
    if (!reading.flexible_version) {
        seen.say(driver + "doesn't report a flexible version string.");
        return false;
    }
    int a, b, c;
    if (std::sscanf(reading.flexible_version->c_str(), "%d.%d.%d", &a, &b, &c) != 3) {
        seen.say(driver +
                 "doesn't report a valid flexible version string: " + *reading.flexible_version);
        return false;
    }
    return true;
}

unsigned highest(const std::vector<unsigned>& versions, const std::string& core,
                 const std::string& api) {
    if (versions.empty())
        return 0;
    const unsigned most = *std::max_element(versions.begin(), versions.end());
    const bool capped = core == "Vexa-K300" || core == "Vexa-K320" || core == "Vexa-K420";
    return most == 320 && api == "openglessl" && capped ? 310 : most;
}

/// The compilers of one type; throws when a version is no number.
void add_type(Catalogue& catalogue, std::size_t library, const Record& record,
              const Reading& reading, const std::string& type) {
    const int api = type == "openglessl" ? 0 : 1;
    std::string extensions;
    for (const std::string& extension : reading.extensions[api])
        extensions += extension + " ";
    std::vector<unsigned> versions;
    for (const std::string& version : reading.versions[api])
        versions.push_back(static_cast<unsigned>(standard_stoi(version)));

    for (const Core& core : record.cores.seen()) {
        const std::string name = core.name.value_or("");
        if (blacklisted(name))
            continue;
        Entry entry;
        entry.library = library;
        entry.driver_name = catalogue.libraries[library].driver.name;
        entry.core_name = display_name(name);
        entry.reported_core_name = name;
        entry.core_revision = core.revision.value_or("");
        entry.api_name = type;
        entry.highest_version = highest(versions, entry.core_name, type);
        entry.extensions = extensions;
        entry.extensions_known = !extensions.empty();
        entry.binary_output = record.binary == 1;
        entry.prerotate = reading.prerotate;
        entry.rank = read_rank(entry.core_name, entry.core_revision);
        catalogue.entries.push_back(entry);
    }
}

/// Whether the plug-ins after this one are looked at.
bool add_library(Catalogue& catalogue, std::size_t number, Seen& seen) {
    const Library& library = catalogue.libraries[number];
    const Record& record = library.plugin->get_capabilities(seen);
    if (record.result != 0) {
        seen.say("Could not get capabilities of library at " + library.path + ".");
        return false;
    }
    const Reading reading = read(record, seen);
    if (!is_usable(reading, library, seen))
        return false;
    library.plugin->note_version_call(seen);
    const std::size_t block = catalogue.entries.size();
    try {
        for (const std::string& type : reading.types)
            if (type == "openglessl" || type == "opencl")
                add_type(catalogue, number, record, reading, type);
    } catch (const std::logic_error&) {
        library.plugin->release_capabilities(seen);
        throw;
    }
    std::stable_sort(catalogue.entries.begin() + static_cast<std::ptrdiff_t>(block),
                     catalogue.entries.end(),
                     [](const Entry& a, const Entry& b) { return a.rank > b.rank; });
    library.plugin->release_capabilities(seen);
    return true;
}

} // namespace

void Catalogue::close(bool with_compilers, Seen& seen) {
    for (std::size_t i = 0; i < libraries.size(); ++i) {
        const bool has_compilers = std::any_of(
            entries.begin(), entries.end(), [i](const Entry& entry) { return entry.library == i; });
        if (has_compilers == with_compilers)
            libraries[i].plugin->close(seen);
    }
}

Catalogue build(const Directory& directory, std::vector<Steered>& plugins, Seen& seen) {
    Catalogue catalogue;
    catalogue.libraries = load(directory, plugins, seen);
    try {
        for (std::size_t i = 0; i < catalogue.libraries.size(); ++i)
            if (!add_library(catalogue, i, seen))
                break;
    } catch (const std::logic_error&) {
        catalogue.close(false, seen);
        catalogue.close(true, seen);
        throw;
    }
    catalogue.close(false, seen);
    return catalogue;
}

std::string identity(const Entry& entry) {
    return logged(entry.core_name) + "|" + logged(entry.core_revision) + "|" + entry.api_name +
           "|" + std::to_string(entry.highest_version) + "|" + logged(entry.reported_core_name);
}

void adopt_order(Catalogue& catalogue, const std::vector<std::string>& identities) {
    std::vector<Entry>& entries = catalogue.entries;
    for (std::size_t i = 0; i < entries.size() && i < identities.size(); ++i)
        for (std::size_t j = i; j < entries.size(); ++j) {
            if (entries[j].library != entries[i].library || entries[j].rank != entries[i].rank)
                break;
            if (identity(entries[j]) == identities[i]) {
                std::swap(entries[i], entries[j]);
                break;
            }
        }
}

} // namespace model
