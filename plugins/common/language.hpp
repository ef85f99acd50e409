// SPDX-License-Identifier: MIT
#pragma once

#include "common/outputs.hpp"

#include <vexaoc.h>

#include <optional>

// What each plug-in defines for its language; the rest of the interface is the same for all.
namespace plugin {

// The entries and whether there are binaries, made of constants: there is nothing to release.
vexaoc_capabilities language_capabilities();

// Compiles what is complete and for a known core. Nothing when an option is not understood.
// Throws std::bad_alloc.
std::optional<Outputs> compile(const vexaoc_inputs& inputs);

} // namespace plugin
