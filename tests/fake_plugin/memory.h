/* SPDX-License-Identifier: MIT
 *
 * Memory that is junk when it is new and overwritten before it is freed, so
 * that a reader that holds on to it reads garbage; and records written and read
 * by offset. */
#ifndef FAKE_MEMORY_H
#define FAKE_MEMORY_H

#include <stddef.h>
#include <stdint.h>

enum { JUNK = 0xA5 };

typedef struct Block Block;

/* From now on memory ends where nothing may be read, wherever it then begins
 * (arrays of records are in place all the same), and is gone when it is freed. */
void guard_memory(void);

void* allocate(Block** blocks, size_t size);
void release_blocks(Block** blocks);

/* A list of texts that grows. */
typedef struct {
    char** texts;
    uint32_t count;
} List;

/* Appends a copy, or a null pointer. */
void append(Block** blocks, List* list, const char* text);

void put32(void* record, size_t offset, unsigned long value);
void put_pointer(void* record, size_t offset, const void* value);
void put_list(void* record, size_t count_at, size_t pointer_at, uint32_t count,
              const void* pointer);
uint32_t get32(const void* record, size_t offset);
void* get_pointer(const void* record, size_t offset);

#endif
