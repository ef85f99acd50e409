/* SPDX-License-Identifier: MIT
 * A driver with one core, whose compiler accepts everything and returns what it was
 * given: the definitions, each with a newline, and the source. */
#include <string.h>

#include <vexaoc.h>

static char core_name[] = "k46x", core_revision[] = "r0p0_00rel0";
static vexaoc_core core = {core_name, core_revision};

/* Not exported: it is not one of the five. */
char* entries[] = {"compiler_type",      "openglessl", "flexible_version",      "1.0.0",
                   "openglessl_version", "320",        "openglessl_extensions", "GL_EXT_a"};

void vexaoc_get_api_version(vexaoc_api_version* version) {
    version->major = VEXAOC_API_VERSION_MAJOR;
    version->minor = VEXAOC_API_VERSION_MINOR;
    version->patch = VEXAOC_API_VERSION_PATCH;
}

int vexaoc_get_capabilities(vexaoc_capabilities* capabilities) {
    capabilities->binary_output_supported = 1;
    capabilities->num_cores = 1;
    capabilities->cores = &core;
    capabilities->num_entries = 8;
    capabilities->entries = entries;
    return VEXAOC_SUCCESS;
}

int vexaoc_release_capabilities(vexaoc_capabilities* capabilities) {
    (void)capabilities;
    return VEXAOC_SUCCESS;
}

int vexaoc_compile(vexaoc_inputs* inputs, vexaoc_outputs* outputs) {
    static char text[4096];
    char* end = text;
    if (!inputs->binary_output)
        return VEXAOC_SUCCESS;
    for (uint32_t i = 0; i + 1 < inputs->num_options; i += 2)
        if (strcmp(inputs->options[i], "define") == 0)
            end = stpcpy(stpcpy(end, inputs->options[i + 1]), "\n");
    end = stpcpy(end, inputs->source);
    outputs->binary = (uint8_t*)text;
    outputs->binary_size = (uint32_t)(end - text);
    return VEXAOC_SUCCESS;
}

int vexaoc_release_outputs(vexaoc_outputs* outputs) {
    memset(outputs, 0, sizeof *outputs);
    return VEXAOC_SUCCESS;
}
