// SPDX-License-Identifier: MIT
#pragma once

#include "loading.hpp"

/// Model of the catalogue: which compilers the plug-ins of a directory give.
namespace model {

/// One compiler.
struct Entry {
    std::size_t library; ///< index in Catalogue::libraries
    std::string driver_name;
    std::string core_name;
    std::string reported_core_name;
    std::string core_revision;
    std::string api_name;
    unsigned highest_version;
    std::string extensions;
    bool extensions_known;
    bool binary_output;
    bool prerotate;
    Rank rank;
};

struct Catalogue {
    std::vector<Library> libraries;
    std::vector<Entry> entries; ///< an ID is the position

    /// Closes the plug-ins that have, or do not have, compilers.
    void close(bool with_compilers, Seen& seen);
};

/// Throws what a version that is no number makes the initialisation throw,
/// after everything that was opened is closed.
Catalogue build(const Directory& directory, std::vector<Steered>& plugins, Seen& seen);

/// All that tells two compilers of one driver apart from outside, given the
/// core's name as a compile request shows it.
std::string identity(const Entry& entry);

/// Compilers of one plug-in with the same rank come in any order: takes over
/// the order in which the library has them, as far as it is one of those.
void adopt_order(Catalogue& catalogue, const std::vector<std::string>& identities);

} // namespace model
