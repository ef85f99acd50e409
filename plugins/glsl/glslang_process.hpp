// SPDX-License-Identifier: MIT
#pragma once

namespace glsl {

// Sets glslang up on the first call; it is torn down when the plug-in is closed. Throws
// std::bad_alloc once set_unusable() was called.
void use_glslang();

// glslang does not clean up when an exception passes through it: locks stay locked and tables
// half built. Nothing may enter it after that.
void set_unusable() noexcept;

} // namespace glsl
