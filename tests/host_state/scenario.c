/* SPDX-License-Identifier: MIT */
#include "scenario.h"

static const char* shown(const char* text) {
    return text ? text : "(null)";
}

static void ask_too_early(Scenario* scenario, FILE* out) {
    (void)scenario;
    vexacm_version version = {1, 1, 1};
    vexacm_get_manager_version(&version);
    fprintf(out, "%u %s\n", version.major, shown(vexacm_get_extensions(0)));
}

static void initialise(Scenario* scenario, FILE* out) {
    fprintf(out, "%d\n", vexacm_initialize_libraries(scenario->root));
}

static void list(Scenario* scenario, FILE* out) {
    vexacm_version version;
    vexacm_get_manager_version(&version);
    fprintf(out, "%u.%u.%u\n", version.major, version.minor, version.patch);
    for (unsigned int at_least = 0; at_least < 2000000; at_least += 310) {
        unsigned int* ids;
        unsigned int count;
        vexacm_get_compilers(&ids, &count, NULL, NULL, NULL, NULL, "true", at_least);
        if (at_least % 310000 == 0)
            fprintf(out, "%u from %u on\n", count, at_least);
        vexacm_release_compilers(&ids, count);
    }
    vexacm_get_compilers(NULL, NULL, NULL, NULL, NULL, NULL, NULL, 0);
    vexacm_get_compilers(&scenario->ids, &scenario->count, NULL, NULL, NULL, NULL, NULL, 0);
    fprintf(out, "%u compilers\n", scenario->count);
}

static void ask(Scenario* scenario, FILE* out) {
    for (unsigned int i = 0; i < scenario->count; ++i) {
        const unsigned int id = scenario->ids[i];
        fprintf(out, "%u %s %s %s %s %u %d %d\n", id, vexacm_get_driver_name(id),
                vexacm_get_core_name(id), vexacm_get_core_revision(id), vexacm_get_api_name(id),
                vexacm_get_highest_api_version(id), vexacm_is_binary_output_supported(id),
                vexacm_is_prerotate_supported(id));
    }
}

static void ask_for_extensions(Scenario* scenario, FILE* out) {
    for (unsigned int i = 0; i < scenario->count; ++i)
        fprintf(out, "%s\n", vexacm_get_extensions(scenario->ids[i]));
}

static void print_texts(const char* name, uint32_t count, char** texts, FILE* out) {
    fprintf(out, "%s:", name);
    for (uint32_t i = 0; i < count; ++i)
        fprintf(out, " %s", shown(texts[i]));
    fputc('\n', out);
}

static void compile(Scenario* scenario, FILE* out) {
    const char* const kernels[] = {"k", "l"};
    const char* const defines[] = {"A", "B=1,234"};
    for (unsigned int i = 0; i < scenario->count && i < MOST_COMPILERS; ++i) {
        const unsigned int id = scenario->ids[i];
        const int opencl = vexacm_get_api_name(id)[4] == 'c';
        vexaoc_outputs* outputs = &scenario->outputs[scenario->num_outputs++];
        fprintf(out, "%d ",
                vexacm_compile(outputs, "good", opencl ? "kernel" : "geometry", kernels, 2, true,
                               false, defines, 2, id));
        for (uint32_t j = 0; j < outputs->num_string_lists; ++j)
            print_texts("list", outputs->string_lists[j].num_strings,
                        outputs->string_lists[j].strings, out);
        for (uint32_t j = 0; j < outputs->binary_size; ++j)
            fprintf(out, "%02x", outputs->binary[j]);
        print_texts(" a", outputs->num_strings_a, outputs->strings_a, out);
        print_texts(" b", outputs->num_strings_b, outputs->strings_b, out);
    }
}

static void compile_wrongly(Scenario* scenario, FILE* out) {
    static const char* const types[] = {"none",    "kernel",   "fragment",
                                        "compute", "geometry", "tessellation_control"};
    static const char* const sources[] = {"good", "result 1", "result 2", "result 3", "result 4"};
    for (unsigned int i = 0; i < scenario->count; ++i)
        for (size_t type = 0; type < sizeof types / sizeof *types; ++type)
            for (size_t source = 0; source < sizeof sources / sizeof *sources; ++source) {
                vexaoc_outputs outputs;
                fprintf(out, "%d",
                        vexacm_compile(&outputs, sources[source], types[type], NULL, 0, false,
                                       type == 5, NULL, 0, scenario->ids[i]));
                vexacm_release_compiler_outputs(&outputs);
            }
    fprintf(out, " %d\n", vexacm_compile(NULL, NULL, NULL, NULL, 0, false, false, NULL, 0, 0));
}

static void release(Scenario* scenario, FILE* out) {
    for (unsigned int i = 0; i < scenario->num_outputs; ++i)
        vexacm_release_compiler_outputs(&scenario->outputs[i]);
    vexacm_release_compilers(&scenario->ids, scenario->count);
    fprintf(out, "%d\n", scenario->ids == NULL);
    vexacm_release_libraries();
}

static void ask_too_late(Scenario* scenario, FILE* out) {
    fprintf(out, "%s\n", shown(vexacm_get_core_name(0)));
    vexacm_release_compilers(&scenario->ids, 0);
}

void run_step(Scenario* scenario, int step, FILE* out) {
    static void (*const steps[NUM_STEPS])(Scenario*, FILE*) = {
        ask_too_early, initialise,      list,    ask,         ask_for_extensions,
        compile,       compile_wrongly, release, ask_too_late};
    steps[step](scenario, out);
}
