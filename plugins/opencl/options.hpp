// SPDX-License-Identifier: MIT
#pragma once

#include "common/definition.hpp"

#include <vexaoc.h>

#include <optional>
#include <string>
#include <vector>

namespace opencl {

struct Options {
    std::vector<std::string> kernels; // that the source must define
    std::vector<plugin::Definition> definitions;
};

// Nothing when an option is unknown, lacks its value or has one that means nothing here, or when
// there is no shader type.
std::optional<Options> read_options(const vexaoc_inputs& inputs);

} // namespace opencl
