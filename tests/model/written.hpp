// SPDX-License-Identifier: MIT
#pragma once

#include "description.hpp"
#include "plugin_directory.hpp"

namespace model {

/// Makes the files that a description tells of. Completes the description by
/// what only the system knows: where the directory is, in which order it lists
/// the files, and why it does not open some of them.
void write(Directory& directory, Plugin_directory& files);

} // namespace model
