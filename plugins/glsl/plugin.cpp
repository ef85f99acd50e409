// SPDX-License-Identifier: MIT
// The five functions of the plug-in interface.
#include "capabilities.hpp"
#include "common/outputs.hpp"
#include "compile.hpp"
#include "options.hpp"

#include <vexaoc.h>

#include <optional>

namespace {

bool is_complete(const vexaoc_inputs* inputs) {
    return inputs != nullptr && inputs->source != nullptr && inputs->core_name != nullptr &&
           inputs->core_revision != nullptr;
}

int compile(const vexaoc_inputs& inputs, vexaoc_outputs& outputs) {
    if (!glsl::knows_core(inputs.core_name, inputs.core_revision))
        return VEXAOC_CORE_NOT_SUPPORTED;
    const std::optional<glsl::Options> options = glsl::read_options(inputs);
    if (!options)
        return VEXAOC_INVALID_PARAMETERS;
    plugin::hand_out(glsl::compile(inputs.source, *options, inputs.binary_output == 1), outputs);
    return VEXAOC_SUCCESS;
}

} // namespace

void vexaoc_get_api_version(vexaoc_api_version* version) {
    if (version != nullptr)
        *version = {VEXAOC_API_VERSION_MAJOR, VEXAOC_API_VERSION_MINOR, VEXAOC_API_VERSION_PATCH};
}

int vexaoc_get_capabilities(vexaoc_capabilities* capabilities) {
    if (capabilities == nullptr)
        return VEXAOC_INVALID_PARAMETERS;
    *capabilities = glsl::capabilities();
    return VEXAOC_SUCCESS;
}

int vexaoc_release_capabilities(vexaoc_capabilities* capabilities) {
    if (capabilities == nullptr)
        return VEXAOC_INVALID_PARAMETERS;
    *capabilities = {};
    return VEXAOC_SUCCESS;
}

int vexaoc_compile(vexaoc_inputs* inputs, vexaoc_outputs* outputs) {
    if (outputs == nullptr || !is_complete(inputs))
        return VEXAOC_INVALID_PARAMETERS;
    try {
        return compile(*inputs, *outputs);
    } catch (...) {
        // Every exception that can come is about memory, std::length_error included.
        return VEXAOC_MEMORY_ERROR;
    }
}

int vexaoc_release_outputs(vexaoc_outputs* outputs) {
    if (outputs == nullptr)
        return VEXAOC_INVALID_PARAMETERS;
    plugin::take_back(*outputs);
    return VEXAOC_SUCCESS;
}
