/* SPDX-License-Identifier: MIT */
#define _GNU_SOURCE
#include "memory.h"

#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>

enum { PAGE = 4096 };

struct Block {
    Block* next;
    size_t size;
    unsigned char* bytes;
    size_t mapped; /* 0: from malloc */
};

static int guarded;

void guard_memory(void) {
    guarded = 1;
}

/* Ends where a page begins that may not be touched, and so begins anywhere. */
static unsigned char* map_before_a_guard(size_t size, size_t* mapped) {
    const size_t room = (size + PAGE - 1) / PAGE * PAGE;
    *mapped = room + PAGE;
    unsigned char* pages =
        mmap(NULL, *mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED || mprotect(pages + room, PAGE, PROT_NONE) != 0)
        abort();
    return pages + room - size;
}

static unsigned char* first_page(const Block* block) {
    return block->bytes + block->size + PAGE - block->mapped;
}

void* allocate(Block** blocks, size_t size) {
    Block* block = calloc(1, sizeof *block);
    if (!block)
        abort();
    block->bytes = guarded ? map_before_a_guard(size, &block->mapped) : malloc(size);
    if (!block->bytes)
        abort();
    block->next = *blocks;
    block->size = size;
    *blocks = block;
    return memset(block->bytes, JUNK, size);
}

void release_blocks(Block** blocks) {
    while (*blocks) {
        Block* block = *blocks;
        *blocks = block->next;
        memset(block->bytes, 'X', block->size);
        if (block->mapped)
            munmap(first_page(block), block->mapped);
        else
            free(block->bytes);
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
