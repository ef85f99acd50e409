/* SPDX-License-Identifier: MIT */
#define _GNU_SOURCE
#include "journal.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

static char own_name[512];
static const char* log_path;
static char* note_text;
static size_t note_size;
static FILE* note;

void open_journal(const char* plugin_path, const char* path) {
    const char* name = plugin_path;
    size_t slashes = 0;
    for (const char* end = name + strlen(name); end > plugin_path && slashes < 2; --end)
        if (end[-1] == '/' && ++slashes == 2)
            name = end;
    snprintf(own_name, sizeof own_name, "%s", name);
    log_path = path;
}

void begin_note(const char* call) {
    note = open_memstream(&note_text, &note_size);
    fprintf(note, "%s %s", own_name, call);
}

void note_word(const char* name, const char* text) {
    fprintf(note, " %s", name);
    for (const char* next = text ? text : "(null)"; *next; ++next)
        if (*next <= ' ' || *next == '%')
            fprintf(note, "%%%02X", (unsigned char)*next);
        else
            fputc(*next, note);
}

void note_number(const char* name, unsigned long value) {
    fprintf(note, " %s%lu", name, value);
}

void end_note(void) {
    fputc('\n', note);
    fclose(note);
    const int file = log_path ? open(log_path, O_WRONLY | O_CREAT | O_APPEND, 0600) : -1;
    if (file >= 0) {
        if (write(file, note_text, note_size) < 0)
            abort();
        close(file);
    }
    free(note_text);
}

void note_call(const char* call) {
    begin_note(call);
    end_note();
}
