// SPDX-License-Identifier: MIT
#pragma once

#include <vexaoc.h>

#include <cstdint>
#include <string>
#include <vector>

namespace plugin {

using Texts = std::vector<std::string>;

// What a compile gave, as a plug-in gathers it.
struct Outputs {
    std::vector<Texts> table;
    std::vector<std::uint8_t> binary;
    Texts errors;
    Texts warnings;
};

// Copies the outputs into a zeroed record. When memory runs out, what was copied so far is in the
// record and take_back() frees it.
void hand_out(const Outputs& outputs, vexaoc_outputs& record);

// Frees what hand_out() put into the record and zeroes it, so that a second call does no harm.
void take_back(vexaoc_outputs& record) noexcept;

} // namespace plugin
