/* SPDX-License-Identifier: MIT */
#include "measures.h"

#include <dirent.h>
#include <malloc.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static FILE* open_or_abort(const char* path) {
    FILE* file = fopen(path, "r");
    if (!file)
        abort();
    return file;
}

/* The lines in which a text occurs. */
static long count_lines(const char* path, const char* text) {
    FILE* file = open_or_abort(path);
    char line[8192];
    long count = 0;
    while (fgets(line, sizeof line, file))
        count += strstr(line, text) != NULL;
    fclose(file);
    return count;
}

static long read_resident(void) {
    FILE* file = open_or_abort("/proc/self/smaps_rollup"); /* exact, unlike status */
    char line[256];
    long size = -1;
    while (size < 0 && fgets(line, sizeof line, file))
        if (sscanf(line, "Rss: %ld", &size) != 1)
            size = -1;
    fclose(file);
    if (size < 0)
        abort();
    return size;
}

static long count_descriptors(void) {
    DIR* directory = opendir("/proc/self/fd");
    if (!directory)
        abort();
    long count = 0;
    while (readdir(directory))
        ++count;
    closedir(directory);
    return count - 3; /* ".", ".." and the directory's own */
}

Measures measure(void) {
    Measures now;
    now.descriptors = count_descriptors();
    now.mappings = count_lines("/proc/self/maps", "");
    now.resident = read_resident();
    now.heap = (long)mallinfo2().uordblks;
    return now;
}

int is_mapped(const char* file_name) {
    return count_lines("/proc/self/maps", file_name) != 0;
}
