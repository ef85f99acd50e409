// SPDX-License-Identifier: MIT
#include "compilers.hpp"

#include <nlohmann/json.hpp>

namespace vexacm_tool {

const char* yes_or_no(bool answer) {
    return answer ? "yes" : "no";
}

nlohmann::ordered_json to_json(const Compiler& compiler) {
    return {{"id", compiler.id},
            {"driver", compiler.driver},
            {"core", compiler.core},
            {"revision", compiler.revision},
            {"api", compiler.api},
            {"version", compiler.version},
            {"binary_output", compiler.binary_output},
            {"prerotate", compiler.prerotate}};
}

std::string to_text(const nlohmann::ordered_json& value) {
    return value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

} // namespace vexacm_tool
