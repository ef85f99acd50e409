/* SPDX-License-Identifier: MIT
 *
 * A plug-in that fills no more of a record than it must, as it may: records
 * come zeroed. It says so when one does not. Its interface version is another
 * one at each call, and it leaves errno as a failed conversion does. */
#include <errno.h>
#include <stdio.h>
#include <string.h>

#include "vexaoc.h"

static void check_zeroed(const char* name, const void* record, size_t size) {
    static const char zeroes[64];
    if (memcmp(record, zeroes, size) != 0)
        dprintf(2, "%s not zeroed\n", name);
}

void vexaoc_get_api_version(vexaoc_api_version* version) {
    static uint32_t num_calls;
    check_zeroed("version", version, sizeof *version);
    version->major = ++num_calls;
    errno = ERANGE;
}

int vexaoc_get_capabilities(vexaoc_capabilities* capabilities) {
    static char texts[][20] = {"k46x",
                               "r0p0_00rel0",
                               "compiler_type",
                               "openglessl",
                               "flexible_version",
                               "1.0.0",
                               "openglessl_version",
                               "320"};
    static vexaoc_core core = {texts[0], texts[1]};
    static char* entries[] = {texts[2], texts[3], texts[4], texts[5], texts[6], texts[7]};
    check_zeroed("capabilities", capabilities, sizeof *capabilities);
    capabilities->num_cores = 1;
    capabilities->cores = &core;
    capabilities->num_entries = 6;
    capabilities->entries = entries;
    return 0;
}

int vexaoc_release_capabilities(vexaoc_capabilities* capabilities) {
    (void)capabilities;
    errno = ERANGE;
    return 0;
}

int vexaoc_compile(vexaoc_inputs* inputs, vexaoc_outputs* outputs) {
    (void)inputs;
    check_zeroed("outputs", outputs, sizeof *outputs);
    return 0;
}

int vexaoc_release_outputs(vexaoc_outputs* outputs) {
    check_zeroed("released outputs", outputs, sizeof *outputs);
    return 0;
}
