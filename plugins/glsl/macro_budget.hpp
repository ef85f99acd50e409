// SPDX-License-Identifier: MIT
#pragma once

namespace glsl {

// Limits what macros may expand to on this thread as long as it exists: twenty lines of
// "#define B A A" would otherwise give a million tokens. Past the limit macros expand to nothing,
// so that glslang comes to its end by itself.
class Macro_budget {
public:
    Macro_budget();
    ~Macro_budget();
    Macro_budget(const Macro_budget&) = delete;
    Macro_budget& operator=(const Macro_budget&) = delete;

    bool exhausted() const;
};

} // namespace glsl
