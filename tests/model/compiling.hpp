// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue.hpp"
#include "request.hpp"

/// Model of one compiler at work.
namespace model {

struct Compiled {
    bool done = false;
    Outputs outputs;
};

/// Checks a request, has the plug-in carry it out and copies what that gave.
Compiled compile(Catalogue& catalogue, Entry& entry, const Compile& request, Seen& seen);

/// The compiler's extensions, found out by compiling where the plug-in tells
/// none.
std::string extensions(Catalogue& catalogue, Entry& entry, Seen& seen);

} // namespace model
