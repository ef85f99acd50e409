// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

namespace vexacm_tool {

using Seconds = std::chrono::duration<double>;

/// Such as "60 seconds" or "0.5 seconds".
inline std::string in_seconds(Seconds time) {
    std::string text = std::to_string(time.count());
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text + (text == "1" ? " second" : " seconds");
}

} // namespace vexacm_tool
