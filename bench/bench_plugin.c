/* SPDX-License-Identifier: MIT */
#include "bench_plugin.h"

#include <stdio.h>
#include <stdlib.h>

static vexaoc_core usual_cores[] = {
    {"k46x", "r1p0_01rel0"}, {"k30x", "r1p0_01rel0"}, {"k58x", "r1p0_01rel0"},
    {"k42x", "r1p0_01rel0"}, {"k52x", "r1p0_01rel0"}, {"k56x", "r1p0_01rel0"},
    {"k32x", "r1p0_01rel0"}, {"k53x", "r1p0_01rel0"}, {"k46x", "r0p0_00rel0"},
    {"k30x", "r0p0_00rel0"}, {"k58x", "r0p0_00rel0"}, {"k42x", "r0p0_00rel0"},
    {"k52x", "r0p0_00rel0"}, {"k56x", "r0p0_00rel0"}, {"k32x", "r0p0_00rel0"},
    {"k53x", "r0p0_00rel0"}, {"k46x", "r0p1_00rel2"}, {"k30x", "r0p1_00rel2"},
    {"k58x", "r0p1_00rel2"}, {"k42x", "r0p1_00rel2"}, {"k52x", "r0p1_00rel2"},
    {"k56x", "r0p1_00rel2"}, {"k32x", "r0p1_00rel2"}, {"k53x", "r0p1_00rel2"},
};
static vexaoc_core* cores = usual_cores;
static uint32_t num_cores = sizeof usual_cores / sizeof *usual_cores;
static void (*on_compile)(const vexaoc_inputs*);

static char* entries[] = {
    "compiler_type",      "openglessl", "flexible_version",   "1.0.0",
    "openglessl_version", "320",        "openglessl_version", "310",
};

/* In no order: the factors have none in common with the counts. */
void bench_plugin_set_cores(uint32_t count) {
    static char* names[] = {"k30x", "k32x", "k42x", "k46x", "k52x", "k53x", "k56x", "k58x"};
    static vexaoc_core* many_cores;
    static char(*revisions)[sizeof "r0p0_00rel0"];
    free(many_cores);
    free(revisions);
    many_cores = calloc(count, sizeof *many_cores);
    revisions = calloc(count, sizeof *revisions);
    if (!many_cores || !revisions)
        abort();
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t mixed = (uint32_t)((i * UINT64_C(7368787)) % 1000003);
        snprintf(revisions[i], sizeof *revisions, "r%up%u_%02urel%u", mixed / 8 % 10,
                 mixed / 80 % 10, mixed / 800 % 100, mixed / 80000 % 10);
        many_cores[i].core_name = names[mixed % 8];
        many_cores[i].core_revision = revisions[i];
    }
    cores = many_cores;
    num_cores = count;
}

void bench_plugin_on_compile(void (*callback)(const vexaoc_inputs*)) {
    on_compile = callback;
}

void vexaoc_get_api_version(vexaoc_api_version* version) {
    version->major = VEXAOC_API_VERSION_MAJOR;
}

int vexaoc_get_capabilities(vexaoc_capabilities* capabilities) {
    capabilities->num_cores = num_cores;
    capabilities->cores = cores;
    capabilities->num_entries = sizeof entries / sizeof *entries;
    capabilities->entries = entries;
    return 0;
}

int vexaoc_release_capabilities(vexaoc_capabilities* capabilities) {
    (void)capabilities;
    return 0;
}

int vexaoc_compile(vexaoc_inputs* inputs, vexaoc_outputs* outputs) {
    (void)outputs;
    if (on_compile)
        on_compile(inputs);
    return 0;
}

int vexaoc_release_outputs(vexaoc_outputs* outputs) {
    (void)outputs;
    return 0;
}
