// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vexacm_tool {

/// The bytes in hexadecimal, and back.
std::string hexadecimal(std::string_view bytes);
std::string bytes_of_hexadecimal(std::string_view digits);

} // namespace vexacm_tool
