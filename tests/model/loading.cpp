// SPDX-License-Identifier: MIT
#include "loading.hpp"

#include <algorithm>
#include <cstdio>

namespace model {

namespace {

/// Whether the values of "flexible_version" allow a plug-in to be used.
bool check_flexible_versions(const Record& record, const std::string& path, Seen& seen) {
    bool good = true;
    for (const auto& [key, value] : pairs(record)) {
        if (key != "flexible_version")
            continue;
        unsigned a = 0, b = 0, c = 0;
        if (std::sscanf(value.c_str(), "%u.%u.%u", &a, &b, &c) != 3) {
            seen.say("Invalid or malformed flexible version specified for library " + path + ".");
            seen.say("Version specified: " + value);
            good = false;
        }
        if (a < 1 || a > 3) {
            seen.say("Library at " + path + " uses flexible version " + std::to_string(a) + "." +
                     std::to_string(b) + "." + std::to_string(c) + ".");
            seen.say("This compiler manager supports flexible versions v1.x.x, v2.x.x and v3.x.x "
                     "only. Please upgrade to a later compiler manager version.");
            good = false;
        }
    }
    return good;
}

/// Whether an open plug-in is taken.
bool check(Steered& plugin, const std::string& path, Seen& seen) {
    if (plugin.description.kind == Plugin::Kind::lacks_a_function) {
        seen.say("Library at " + path + " isn't implemented correctly");
        return false;
    }
    plugin.note_version_call(seen);
    const std::uint32_t* const version = plugin.description.version;
    if (version[0] != 1) {
        seen.say("Library at " + path + " has version " + std::to_string(version[0]) + "." +
                 std::to_string(version[1]) + "." + std::to_string(version[2]) + ".");
        seen.say("This compiler manager supports library version v1.x.x only. Please upgrade to a "
                 "later compiler manager version.");
        return false;
    }
    const Record& record = plugin.get_capabilities(seen);
    if (record.result != 0) {
        seen.say("Failed to get capabilities for library " + path + ".");
        return false;
    }
    const bool good = check_flexible_versions(record, path, seen);
    plugin.release_capabilities(seen);
    return good;
}

/// Whether a candidate is open and taken.
bool open(Steered& plugin, const std::string& path, Seen& seen) {
    if (!plugin.description.opens()) {
        seen.say("Couldn't load library at " + path);
        seen.say("Library load error: " + plugin.description.load_error);
        return false;
    }
    plugin.open(seen);
    if (check(plugin, path, seen))
        return true;
    plugin.close(seen);
    return false;
}

} // namespace

std::string subdirectory(const Directory& directory, const std::string& api) {
    const bool has_separator = !directory.root.empty() && directory.root.back() == '/';
    return directory.root + (has_separator ? "" : "/") + api;
}

std::string path(const Directory& directory, const Plugin& plugin) {
    return subdirectory(directory, plugin.api) + "/" + plugin.file_name;
}

std::vector<std::pair<std::string, std::string>> pairs(const Record& record) {
    const std::vector<Text> texts = record.entries.seen();
    std::vector<std::pair<std::string, std::string>> pairs;
    for (std::size_t i = 0; i + 1 < texts.size(); i += 2)
        pairs.emplace_back(texts[i].value_or(""), texts[i + 1].value_or(""));
    return pairs;
}

std::vector<Library> load(const Directory& directory, std::vector<Steered>& plugins, Seen& seen) {
    std::vector<Steered*> candidates;
    for (const std::string api : {"openglessl", "opencl"}) {
        if (!directory.has(api))
            seen.say("Unable to open library directory " + subdirectory(directory, api));
        for (Steered& plugin : plugins)
            if (directory.has(api) && plugin.description.api == api)
                candidates.push_back(&plugin);
    }
    std::vector<Library> libraries;
    for (Steered* const candidate : candidates) {
        const std::string file = path(directory, candidate->description);
        const bool taken = open(*candidate, file, seen);
        const Driver driver = read_driver(file);
        if (!driver.complaint.empty())
            seen.say(driver.complaint);
        if (taken)
            libraries.push_back({candidate, file, driver});
    }
    // Of equally new ones the last found comes first.
    std::reverse(libraries.begin(), libraries.end());
    std::stable_sort(libraries.begin(), libraries.end(),
                     [](const Library& a, const Library& b) { return newer(a.driver, b.driver); });
    return libraries;
}

} // namespace model
