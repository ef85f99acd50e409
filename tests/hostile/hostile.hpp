// SPDX-License-Identifier: MIT
#pragma once

#include "dice.hpp"

/// Plug-ins that go to the limits of what the plug-in interface lets them do.
namespace hostile {

using model::Array;
using model::Dice;
using model::Outcome;
using model::Plugin;
using model::Record;
using model::Text;

/// A directory with one hostile plug-in between a newer and an older good one.
struct Case {
    model::Directory directory;
    std::vector<std::string> manners; ///< steering lines that change nothing for the model
    bool large = false;               ///< asking everything would take too long
};

/// Cases with one subject, numbered from 0.
struct Family {
    const char* name;
    unsigned count;
    /// Makes a good plug-in hostile.
    void (*spoil)(Dice& dice, unsigned number, Plugin& plugin, Case& that);
};

const std::vector<Family>& families();

/// A case of the family with that index: the same everywhere.
Case generate(unsigned family, unsigned number);

/// What the families do.
void spoil_results(Dice& dice, unsigned number, Plugin& plugin, Case& that);
void spoil_pointers(Dice& dice, unsigned number, Plugin& plugin, Case& that);
void spoil_counts(Dice& dice, unsigned number, Plugin& plugin, Case& that);
void spoil_versions(Dice& dice, unsigned number, Plugin& plugin, Case& that);
void spoil_bytes(Dice& dice, unsigned number, Plugin& plugin, Case& that);
void spoil_second_record(Dice& dice, unsigned number, Plugin& plugin, Case& that);
void spoil_outputs(Dice& dice, unsigned number, Plugin& plugin, Case& that);
void lengthen(Dice& dice, unsigned number, Plugin& plugin, Case& that);
void multiply(Dice& dice, unsigned number, Plugin& plugin, Case& that);
void spoil_several(Dice& dice, unsigned number, Plugin& plugin, Case& that);

} // namespace hostile
