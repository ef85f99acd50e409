// SPDX-License-Identifier: MIT
#pragma once

#include "compiling.hpp"

namespace model {

/// Model of the whole library on one plug-in directory: predicts what can be
/// seen of each request. It shares nothing with the library and is written to
/// be read: it recomputes where the library remembers, and copies where the
/// library shares.
class Manager {
public:
    explicit Manager(const Directory& directory);
    Manager(const Manager&) = delete;
    Manager& operator=(const Manager&) = delete;

    Reply answer(const Request& request);

    /// Not initialised: null.
    const Catalogue* compilers() const { return catalogue ? &*catalogue : nullptr; }
    void adopt_order(const std::vector<std::string>& identities);

    /// Whether one more initialisation would throw. Nothing changes.
    bool initialising_throws() const;

private:
    std::string answer(const Initialise& request, Seen& seen);
    std::string answer(const Release& request, Seen& seen);
    std::string answer(const Manager_version& request, Seen& seen);
    std::string answer(const List_compilers& request, Seen& seen);
    std::string answer(const Release_list& request, Seen& seen);
    std::string answer(const Release_outputs& request, Seen& seen);
    std::string answer(const Ask& request, Seen& seen);
    std::string answer(const Compile& request, Seen& seen);

    Directory directory;
    std::vector<Steered> plugins;
    std::optional<Catalogue> catalogue;
};

} // namespace model
