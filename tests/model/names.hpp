// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>

/// Model of the names: what drivers, cores and revisions read as.
namespace model {

struct Driver {
    std::string name;
    int core = -1;
    int revision = -1;
    int patch = -1;
    int version = -1;
    int release = -1;
    std::string complaint; ///< what is told about the name; empty for a good one
};

/// The driver release that a plug-in's path names.
Driver read_driver(const std::string& path);

/// Whether `a` is strictly newer than `b`.
bool newer(const Driver& a, const Driver& b);

/// What callers see of a core's name.
std::string display_name(const std::string& core_name);

/// Whether a core is never offered.
bool blacklisted(const std::string& core_name);

/// Core number, then major, minor, build and release of the revision: the
/// greater stands first.
using Rank = std::array<std::uint32_t, 5>;
Rank read_rank(const std::string& core_display_name, const std::string& revision);

} // namespace model
