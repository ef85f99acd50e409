// SPDX-License-Identifier: MIT
#include "stage.hpp"

#include <filesystem>

namespace vexacm_tool {

namespace {

struct Stage {
    const char* name;
    const char* ending;
};

constexpr Stage STAGES[] = {
    {"vertex", ".vert"},
    {"fragment", ".frag"},
    {"compute", ".comp"},
    {"geometry", ".geom"},
    {"tessellation_control", ".tesc"},
    {"tessellation_evaluation", ".tese"},
    {"kernel", ".cl"},
};

} // namespace

std::vector<std::string> stage_names() {
    std::vector<std::string> names;
    for (const Stage& stage : STAGES)
        names.emplace_back(stage.name);
    return names;
}

std::string stage_of_file(const std::string& file) {
    const std::string ending = std::filesystem::path(file).extension();
    for (const Stage& stage : STAGES)
        if (ending == stage.ending)
            return stage.name;
    return {};
}

std::string api_of_stage(const std::string& stage) {
    return stage == "kernel" ? "opencl" : "openglessl";
}

} // namespace vexacm_tool
