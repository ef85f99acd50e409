/* SPDX-License-Identifier: MIT */
#include "memory.h"

#include <stdlib.h>
#include <string.h>

struct Block {
    Block* next;
    size_t size;
};

void* allocate(Block** blocks, size_t size) {
    Block* block = malloc(sizeof *block + size);
    if (!block)
        abort();
    block->next = *blocks;
    block->size = size;
    *blocks = block;
    return memset(block + 1, JUNK, size);
}

void release_blocks(Block** blocks) {
    while (*blocks) {
        Block* block = *blocks;
        *blocks = block->next;
        memset(block + 1, 'X', block->size);
        free(block);
    }
}

void append(Block** blocks, List* list, const char* text) {
    const int full = (list->count & (list->count - 1)) == 0; /* at 0, 1, 2, 4, ... */
    if (full) {
        char** grown = allocate(blocks, (list->count ? 2 * list->count : 1) * sizeof *grown);
        if (list->count)
            memcpy(grown, list->texts, list->count * sizeof *grown);
        list->texts = grown;
    }
    list->texts[list->count++] = text ? strcpy(allocate(blocks, strlen(text) + 1), text) : NULL;
}

void put32(void* record, size_t offset, unsigned long value) {
    const uint32_t number32 = (uint32_t)value;
    memcpy((char*)record + offset, &number32, sizeof number32);
}

void put_pointer(void* record, size_t offset, const void* value) {
    memcpy((char*)record + offset, &value, sizeof value);
}

void put_list(void* record, size_t count_at, size_t pointer_at, uint32_t count,
              const void* pointer) {
    put32(record, count_at, count);
    put_pointer(record, pointer_at, pointer);
}

uint32_t get32(const void* record, size_t offset) {
    uint32_t value;
    memcpy(&value, (const char*)record + offset, sizeof value);
    return value;
}

void* get_pointer(const void* record, size_t offset) {
    void* value;
    memcpy(&value, (const char*)record + offset, sizeof value);
    return value;
}
