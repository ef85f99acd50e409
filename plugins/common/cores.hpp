// SPDX-License-Identifier: MIT
#pragma once

#include <vexaoc.h>

namespace plugin {

// Makes every core that the manager knows part of the record. They are constants: there is nothing
// to release.
void add_cores(vexaoc_capabilities& record);

bool knows_core(const char* name, const char* revision);

} // namespace plugin
