// SPDX-License-Identifier: MIT
#pragma once

#include "plugin_directory.hpp"
#include "request.hpp"

namespace model {

/// Puts requests to the library itself and tells what can be seen of each.
class Caller {
public:
    Caller(const Directory& that, Plugin_directory& where) : directory(that), files(where) {}

    Reply answer(const Request& request);

private:
    std::string answer(const Initialise& request);
    std::string answer(const Release& request);
    std::string answer(const Manager_version& request);
    std::string answer(const List_compilers& request);
    std::string answer(const Release_list& request);
    std::string answer(const Release_outputs& request);
    std::string answer(const Ask& request);
    std::string answer(const Compile& request);

    const Directory& directory;
    Plugin_directory& files;
    bool initialised = false;
};

} // namespace model
