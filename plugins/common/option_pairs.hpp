// SPDX-License-Identifier: MIT
#pragma once

#include <vexaoc.h>

#include <functional>
#include <string_view>

namespace plugin {

// Hands each key with its value to `read`, until it refuses one. False when it did, and when the
// list is no list of pairs.
bool read_pairs(const vexaoc_inputs& inputs,
                const std::function<bool(std::string_view key, std::string_view value)>& read);

} // namespace plugin
