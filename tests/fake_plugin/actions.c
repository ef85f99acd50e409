/* SPDX-License-Identifier: MIT */
#define _GNU_SOURCE
#include "actions.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum { PIECE = 1 << 20, MOST_PIECES = 4096 };

/* Memory that is asked for and not used costs no more than addresses. Kept, or
 * compilers would leave it out. */
static void allocate(void) {
    static void* volatile piece;
    piece = malloc(PIECE);
    if (!piece)
        abort();
}

static void allocate_without_end(void) {
    for (int i = 0; i < MOST_PIECES; ++i)
        allocate();
}

static void print_without_end(void) {
    static char line[100];
    memset(line, '.', sizeof line - 1);
    line[sizeof line - 1] = '\n';
    for (int i = 0; i < MOST_PIECES; ++i)
        if (write(1, line, sizeof line) < 0)
            return;
    abort();
}

/* And never given back. */
static void leak(unsigned long megabytes) {
    for (unsigned long i = 0; i < megabytes; ++i)
        allocate();
}

static void hang(void) {
    for (;;)
        pause();
}

/* With a child that does not end either and leaves its number in a file. */
static void hang_with_child(const char* path) {
    if (fork() == 0) {
        FILE* file = fopen(path, "w");
        if (!file || fprintf(file, "%d", (int)getpid()) < 0 || fclose(file) != 0)
            abort();
    }
    hang();
}

void act(const Line* line) {
    const char* action = word(line, 1);
    if (strcmp(action, "signal") == 0) {
        signal((int)number(line, 2), SIG_DFL);
        raise((int)number(line, 2));
    }
    if (strcmp(action, "exit") == 0)
        exit((int)number(line, 2));
    if (strcmp(action, "hang") == 0)
        hang();
    if (strcmp(action, "hang-with-child") == 0)
        hang_with_child(word(line, 2));
    if (strcmp(action, "allocate") == 0)
        allocate_without_end();
    if (strcmp(action, "leak") == 0)
        leak(number(line, 2));
    if (strcmp(action, "flood") == 0)
        print_without_end();
    if (strcmp(action, "print") == 0)
        printf("%s", word(line, 2));
    if (strcmp(action, "close") == 0)
        for (int file = 3; file < 256; ++file)
            close(file);
}
