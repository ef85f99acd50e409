/* SPDX-License-Identifier: MIT
 *
 * What the steering file says: lines of words. See steering.md. */
#ifndef FAKE_STEERING_H
#define FAKE_STEERING_H

#include <stddef.h>

typedef struct {
    size_t count;
    char** words; /* a null pointer where the file has a lone "-" */
} Line;

extern Line* lines;
extern size_t num_lines;

/* Reads the file beside a plug-in: its path with every ".so" as "-so", and
 * ".steer" behind it. Without such a file there are no lines. */
void read_steering(const char* plugin_path);
void free_steering(void);

/* A line's word, "" when it has fewer. */
char* word(const Line* line, size_t index);
unsigned long number(const Line* line, size_t index);

int is(const Line* line, const char* directive);

/* The first line with a directive, or null. */
const Line* find(const char* directive);

/* Writes a line's text to standard error; nothing for a null line. */
void say(const Line* line);

#endif
