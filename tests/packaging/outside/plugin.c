/* SPDX-License-Identifier: MIT
 * A driver with one core, whose compiler accepts everything. */
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
    (void)inputs;
    (void)outputs;
    return VEXAOC_SUCCESS;
}

int vexaoc_release_outputs(vexaoc_outputs* outputs) {
    (void)outputs;
    return VEXAOC_SUCCESS;
}
