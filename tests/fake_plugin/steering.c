/* SPDX-License-Identifier: MIT */
#define _GNU_SOURCE
#include "steering.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

Line* lines;
size_t num_lines;

static void decode(char* text) {
    char* to = text;
    for (char* from = text; *from; ++to) {
        if (*from == '%') {
            const char digits[3] = {from[1], from[2], 0};
            *to = (char)strtol(digits, NULL, 16);
            from += 3;
        } else {
            *to = *from++;
        }
    }
    *to = 0;
}

static void read_line(char* text) {
    lines = realloc(lines, (num_lines + 1) * sizeof *lines);
    Line* line = &lines[num_lines++];
    memset(line, 0, sizeof *line);
    for (char* rest = text; (text = strsep(&rest, " ")) != NULL;) {
        line->words = realloc(line->words, (line->count + 1) * sizeof *line->words);
        const int null = line->count > 0 && strcmp(text, "-") == 0;
        decode(text);
        line->words[line->count++] = null ? NULL : text;
    }
}

void read_steering(const char* plugin_path) {
    char name[4096];
    snprintf(name, sizeof name - sizeof ".steer", "%s", plugin_path);
    for (char* dot; (dot = strstr(name, ".so")) != NULL;)
        *dot = '-';
    strcat(name, ".steer");

    FILE* file = fopen(name, "rb");
    if (!file)
        return;
    char* text = NULL;
    for (size_t size = 0; getline(&text, &size, file) > 0; text = NULL, size = 0) {
        text[strcspn(text, "\n")] = 0;
        read_line(text);
    }
    free(text);
    fclose(file);
}

void free_steering(void) {
    for (size_t i = 0; i < num_lines; ++i) {
        free(lines[i].words[0]); /* the others lie in the same line */
        free(lines[i].words);
    }
    free(lines);
}

char* word(const Line* line, size_t index) {
    return index < line->count ? line->words[index] : "";
}

unsigned long number(const Line* line, size_t index) {
    return strtoul(word(line, index), NULL, 0);
}

int is(const Line* line, const char* directive) {
    return strcmp(line->words[0], directive) == 0;
}

const Line* find(const char* directive) {
    for (size_t i = 0; i < num_lines; ++i)
        if (is(&lines[i], directive))
            return &lines[i];
    return NULL;
}

void say(const Line* line) {
    if (line)
        dprintf(2, "%s\n", word(line, 1));
}
