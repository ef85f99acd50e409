// SPDX-License-Identifier: MIT
#pragma once

#include "dice.hpp"
#include "model.hpp"

/// What the library is tried with. Most of it is good, so that there are
/// compilers to try; the rest is at the edge of being good.
namespace model {

/// The file name of a plug-in, rarely the same twice but often nearly.
std::string generate_file_name(Dice& dice);

/// The cores that a plug-in reports.
std::vector<Core> generate_cores(Dice& dice);

/// A plug-in's answers: its records and what compiling gives.
void generate_records(Dice& dice, Plugin& plugin);
void generate_outcomes(Dice& dice, Plugin& plugin);

/// A plug-in directory; its root is what follows the root's name.
Directory generate_directory(Dice& dice);

/// A request that may be put to a library in the model's state.
Request generate_request(Dice& dice, const Manager& model);

/// A compile that reaches the plug-in whatever the compiler.
Request plain_compile(const std::string& api_name, unsigned id);

} // namespace model
