/* SPDX-License-Identifier: MIT
 *
 * What a process holds. */
#ifndef ROUNDS_MEASURES_H
#define ROUNDS_MEASURES_H

typedef struct {
    long resident;    /* KiB in memory */
    long heap;        /* bytes allocated */
    long mappings;    /* lines of /proc/self/maps */
    long descriptors; /* open files */
} Measures;

/* Ends the process when it cannot tell. */
Measures measure(void);

/* Whether a file of that name is mapped. */
int is_mapped(const char* file_name);

#endif
