// SPDX-License-Identifier: MIT
#include "compilers.hpp"

namespace vexacm_tool {

namespace {

const char* text_or_null(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

} // namespace

Compiler_ids matching_compilers(const Filters& filters) {
    unsigned int* ids = nullptr;
    unsigned int count = 0;
    vexacm_get_compilers(&ids, &count, text_or_null(filters.driver), text_or_null(filters.core),
                         text_or_null(filters.revision), text_or_null(filters.api),
                         text_or_null(filters.binary_output), filters.min_version);
    return {std::unique_ptr<unsigned int[], Release_compilers>{ids}, count};
}

Compiler properties(unsigned int id) {
    return {id,
            vexacm_get_driver_name(id),
            vexacm_get_core_name(id),
            vexacm_get_core_revision(id),
            vexacm_get_api_name(id),
            vexacm_get_highest_api_version(id),
            vexacm_is_binary_output_supported(id),
            vexacm_is_prerotate_supported(id)};
}

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
