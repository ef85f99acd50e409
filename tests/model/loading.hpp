// SPDX-License-Identifier: MIT
#pragma once

#include "names.hpp"
#include "steered.hpp"

/// Model of loading: which plug-ins of a directory are taken, in which order.
namespace model {

/// A plug-in that was taken and is open.
struct Library {
    Steered* plugin;
    std::string path;
    Driver driver;
};

/// The key/value pairs of a record as they read: null texts are empty, and a
/// last key without a value is none.
std::vector<std::pair<std::string, std::string>> pairs(const Record& record);

/// Opens the plug-ins of a directory; newest driver first.
std::vector<Library> load(const Directory& directory, std::vector<Steered>& plugins, Seen& seen);

} // namespace model
