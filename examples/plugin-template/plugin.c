/* SPDX-License-Identifier: MIT */
/* A plug-in for one core that accepts any shader with a function main. Put your
 * compiler where check_source() is. */
#include <stdlib.h>
#include <string.h>
#include <vexaoc.h>

static char* capability_list[] = {
    "flexible_version",      "1.0.0",      /* required */
    "compiler_type",         "openglessl", /* or "opencl" */
    "openglessl_version",    "310",        /* the highest counts */
    "openglessl_extensions", "",           /* none; without this pair they are probed */
};
static vexaoc_core cores[] = {{"k46x", "r0p0_00rel0"}};

void vexaoc_get_api_version(vexaoc_api_version* version) {
    version->major = VEXAOC_API_VERSION_MAJOR;
    version->minor = VEXAOC_API_VERSION_MINOR;
    version->patch = VEXAOC_API_VERSION_PATCH;
}

int vexaoc_get_capabilities(vexaoc_capabilities* capabilities) {
    capabilities->num_cores = sizeof cores / sizeof *cores;
    capabilities->cores = cores;
    capabilities->num_entries = sizeof capability_list / sizeof *capability_list;
    capabilities->entries = capability_list;
    return VEXAOC_SUCCESS;
}

int vexaoc_release_capabilities(vexaoc_capabilities* capabilities) {
    (void)capabilities; /* nothing was allocated */
    return VEXAOC_SUCCESS;
}

/* What is wrong with the source, or null. */
static const char* check_source(const char* source) {
    return strstr(source, "main") == NULL ? "ERROR: 0:1: no function main" : NULL;
}

/* Puts a copy of one text into a list; false when memory runs out. */
static int add_text(char*** texts, uint32_t* count, const char* text) {
    *texts = calloc(1, sizeof **texts);
    if (*texts == NULL)
        return 0;
    *count = 1;
    **texts = malloc(strlen(text) + 1);
    if (**texts == NULL)
        return 0;
    strcpy(**texts, text);
    return 1;
}

int vexaoc_compile(vexaoc_inputs* inputs, vexaoc_outputs* outputs) {
    if (inputs->binary_output)
        return VEXAOC_BINARY_OUTPUT_NOT_SUPPORTED;
    const char* error = check_source(inputs->source);
    if (error != NULL && !add_text(&outputs->strings_a, &outputs->num_strings_a, error))
        return VEXAOC_MEMORY_ERROR; /* what was made is released all the same */
    return VEXAOC_SUCCESS;
}

int vexaoc_release_outputs(vexaoc_outputs* outputs) {
    for (uint32_t i = 0; i < outputs->num_strings_a; ++i)
        free(outputs->strings_a[i]);
    free(outputs->strings_a);
    return VEXAOC_SUCCESS;
}
