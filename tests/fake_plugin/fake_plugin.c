/* SPDX-License-Identifier: MIT
 *
 * A plug-in that does what a text file tells it to, and writes down what is
 * done to it. See steering.md beside this file.
 *
 * It knows nothing of the project's headers: records are written and read by
 * offset, and padding holds junk. Every record is built anew for its call and
 * overwritten when it is handed back.
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdlib.h>
#include <string.h>

#include "actions.h"
#include "journal.h"
#include "memory.h"
#include "steering.h"

#define EXPORT __attribute__((visibility("default")))

enum {
    API_VERSION_SIZE = 12,
    CAPABILITIES_SIZE = 40,
    INPUTS_SIZE = 48,
    OUTPUTS_SIZE = 64,
    LIST_SIZE = 16
};

static Block* capability_blocks;
static Block* output_blocks;
static unsigned char last_outputs[OUTPUTS_SIZE];
static unsigned long num_capability_calls;

__attribute__((constructor)) static void load(void) {
    Dl_info self;
    if (!dladdr((void*)&num_capability_calls, &self))
        abort();
    read_steering(self.dli_fname);
    const Line* log = find("log");
    open_journal(self.dli_fname, log ? word(log, 1) : NULL);
    note_call("load");
    say(find("say-on-load"));
    if (find("guard"))
        guard_memory();
    const Line* action = find("on-load");
    if (action)
        act(action);
}

__attribute__((destructor)) static void unload(void) {
    note_call("unload");
    say(find("say-on-unload"));
    release_blocks(&capability_blocks);
    release_blocks(&output_blocks);
    free_steering();
}

/* Directives that make a count or a pointer disagree with its list. */
static void override(void* record, const Line* line, const char* count_name, size_t count_at,
                     const char* null_name, size_t pointer_at) {
    if (is(line, count_name))
        put32(record, count_at, number(line, 1));
    if (is(line, null_name))
        put_pointer(record, pointer_at, NULL);
}

EXPORT void vexaoc_get_api_version(void* version) {
    note_call("get_api_version");
    memset(version, JUNK, API_VERSION_SIZE);
    const Line* line = find("api");
    put32(version, 0, line ? number(line, 1) : 1);
    put32(version, 4, line ? number(line, 2) : 0);
    put32(version, 8, line ? number(line, 3) : 0);
}

/* The section that this capability call reads. */
static unsigned long record_section(void) {
    unsigned long found = 1;
    for (size_t i = 0; i < num_lines; ++i)
        if (is(&lines[i], "record") && number(&lines[i], 1) <= num_capability_calls)
            found = number(&lines[i], 1);
    return found;
}

EXPORT int vexaoc_get_capabilities(void* capabilities) {
    note_call("get_capabilities");
    ++num_capability_calls;
    release_blocks(&capability_blocks);
    memset(capabilities, JUNK, CAPABILITIES_SIZE);

    List entries = {NULL, 0};
    List cores = {NULL, 0}; /* two pointers a core: just what a record is */
    unsigned long binary = 0;
    int result = 0;
    int mine = 0;
    for (size_t i = 0; i < num_lines; ++i) {
        const Line* line = &lines[i];
        if (is(line, "record") || is(line, "outputs"))
            mine = is(line, "record") && number(line, 1) == record_section();
        if (!mine)
            continue;
        if (is(line, "result"))
            result = (int)strtol(word(line, 1), NULL, 0);
        if (is(line, "binary"))
            binary = number(line, 1);
        if (is(line, "text") || is(line, "pair"))
            append(&capability_blocks, &entries, word(line, 1));
        if (is(line, "pair"))
            append(&capability_blocks, &entries, word(line, 2));
        if (is(line, "core")) {
            append(&capability_blocks, &cores, word(line, 1));
            append(&capability_blocks, &cores, word(line, 2));
        }
        if (is(line, "say"))
            say(line);
        if (is(line, "do"))
            act(line);
    }
    put_list(capabilities, 0, 8, cores.count / 2, cores.texts);
    put32(capabilities, 16, binary);
    put_list(capabilities, 24, 32, entries.count, entries.texts);
    mine = 0;
    for (size_t i = 0; i < num_lines; ++i) {
        if (is(&lines[i], "record") || is(&lines[i], "outputs"))
            mine = is(&lines[i], "record") && number(&lines[i], 1) == record_section();
        if (mine) {
            override(capabilities, &lines[i], "num-cores", 0, "null-cores", 8);
            override(capabilities, &lines[i], "num-entries", 24, "null-entries", 32);
        }
    }
    return result;
}

/* What releasing returns, which nobody is to look at. */
static int release_result(void) {
    const Line* line = find("release-result");
    return line ? (int)strtol(word(line, 1), NULL, 0) : 99;
}

EXPORT int vexaoc_release_capabilities(void* capabilities) {
    note_call("release_capabilities");
    release_blocks(&capability_blocks);
    memset(capabilities, 'X', CAPABILITIES_SIZE);
    return release_result();
}

/* The directives of the first outputs section whose word occurs in the source. */
static size_t find_outputs(const char* source, size_t* end) {
    size_t begin = num_lines;
    for (size_t i = 0; i < num_lines && begin == num_lines; ++i)
        if (is(&lines[i], "outputs") && strstr(source, word(&lines[i], 1)))
            begin = i + 1;
    for (*end = begin; *end < num_lines; ++*end)
        if (is(&lines[*end], "outputs") || is(&lines[*end], "record"))
            break;
    return begin;
}

static void note_request(const void* inputs, const void* outputs) {
    static const char zeroes[OUTPUTS_SIZE];
    begin_note("compile");
    note_word("core=", get_pointer(inputs, 24));
    note_word("revision=", get_pointer(inputs, 32));
    note_number("binary=", get32(inputs, 40));
    note_word("outputs=", memcmp(outputs, zeroes, OUTPUTS_SIZE) ? "dirty" : "zeroed");
    const uint32_t num_options = get32(inputs, 8);
    char** options = get_pointer(inputs, 16);
    note_number("options=", num_options);
    for (uint32_t i = 0; i < num_options; ++i)
        note_word("", options[i]);
    note_word("source=", get_pointer(inputs, 0));
    end_note();
    /* Every text is the plug-in's to write into, and only its own. */
    for (uint32_t i = 0; i < num_options; ++i)
        memset(options[i], 'X', strlen(options[i]));
}

static size_t read_hex(Block** blocks, const char* hex, unsigned char** bytes) {
    const size_t size = strlen(hex) / 2;
    *bytes = allocate(blocks, size);
    for (size_t i = 0; i < size; ++i) {
        const char digits[3] = {hex[2 * i], hex[2 * i + 1], 0};
        (*bytes)[i] = (unsigned char)strtoul(digits, NULL, 16);
    }
    return size;
}

static int fill_outputs(void* outputs, size_t begin, size_t end) {
    List a = {NULL, 0};
    List b = {NULL, 0};
    List* items = calloc(end - begin + 1, sizeof *items); /* as many as there are lines */
    uint32_t num_lists = 0;
    unsigned char* binary = NULL;
    size_t binary_size = 0;
    int result = 0;
    if (!items)
        abort();
    for (size_t i = begin; i < end; ++i) {
        const Line* line = &lines[i];
        if (is(line, "result"))
            result = (int)strtol(word(line, 1), NULL, 0);
        if (is(line, "say"))
            say(line);
        if (is(line, "do"))
            act(line);
        if (is(line, "a"))
            append(&output_blocks, &a, word(line, 1));
        if (is(line, "b"))
            append(&output_blocks, &b, word(line, 1));
        if (is(line, "list"))
            ++num_lists;
        if (is(line, "item"))
            append(&output_blocks, &items[num_lists - 1], word(line, 1));
        if (is(line, "binary"))
            binary_size = read_hex(&output_blocks, word(line, 1), &binary);
    }
    char* lists = allocate(&output_blocks, num_lists * LIST_SIZE);
    for (uint32_t i = 0; i < num_lists; ++i)
        put_list(lists + i * LIST_SIZE, 0, 8, items[i].count, items[i].texts);
    free(items);
    memset(outputs, JUNK, OUTPUTS_SIZE);
    put_list(outputs, 0, 8, num_lists, num_lists ? lists : NULL);
    put_list(outputs, 16, 24, (uint32_t)binary_size, binary);
    put_list(outputs, 32, 40, a.count, a.texts);
    put_list(outputs, 48, 56, b.count, b.texts);

    uint32_t list = 0;
    for (size_t i = begin; i < end; ++i) {
        override(outputs, &lines[i], "num-lists", 0, "null-lists", 8);
        override(outputs, &lines[i], "binary-size", 16, "null-binary", 24);
        override(outputs, &lines[i], "num-a", 32, "null-a", 40);
        override(outputs, &lines[i], "num-b", 48, "null-b", 56);
        if (is(&lines[i], "list"))
            ++list;
        if (list)
            override(lists + (list - 1) * LIST_SIZE, &lines[i], "num-items", 0, "null-items", 8);
    }
    return result;
}

static unsigned char last_outputs[OUTPUTS_SIZE];

EXPORT int vexaoc_compile(void* inputs, void* outputs) {
    note_request(inputs, outputs);
    size_t end;
    const size_t begin = find_outputs(get_pointer(inputs, 0), &end);
    release_blocks(&output_blocks);
    const int result = begin < num_lines ? fill_outputs(outputs, begin, end) : 0;
    /* The request is the plug-in's to write into as well. */
    if (get_pointer(inputs, 16))
        memset(get_pointer(inputs, 16), JUNK, get32(inputs, 8) * sizeof(char*));
    memset(inputs, JUNK, INPUTS_SIZE);
    memcpy(last_outputs, outputs, OUTPUTS_SIZE);
    return result;
}

EXPORT int vexaoc_release_outputs(void* outputs) {
    const int same = memcmp(last_outputs, outputs, OUTPUTS_SIZE) == 0;
    note_call(same ? "release_outputs" : "release_outputs of another record");
    release_blocks(&output_blocks);
    memset(outputs, 'X', OUTPUTS_SIZE);
    return release_result();
}
