// SPDX-License-Identifier: MIT
#include "common/option_pairs.hpp"

#include <cstdint>

namespace plugin {

bool read_pairs(const vexaoc_inputs& inputs,
                const std::function<bool(std::string_view key, std::string_view value)>& read) {
    if (inputs.num_options % 2 != 0 || inputs.options == nullptr)
        return false;
    for (std::uint32_t i = 0; i < inputs.num_options; i += 2) {
        const char* key = inputs.options[i];
        const char* value = inputs.options[i + 1];
        if (key == nullptr || value == nullptr || !read(key, value))
            return false;
    }
    return true;
}

} // namespace plugin
