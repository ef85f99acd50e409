// SPDX-License-Identifier: MIT
#include "array_allocations.hpp"

#include <cstdlib>
#include <cstring>
#include <new>

Array_allocations arrays;

void* operator new[](std::size_t size) {
    if (arrays.watched && arrays.made == arrays.failing)
        throw std::bad_alloc();
    void* const memory = std::malloc(size ? size : 1);
    if (!memory)
        throw std::bad_alloc();
    std::memset(memory, 0xa5, size);
    if (arrays.watched) {
        ++arrays.made;
        ++arrays.live;
    }
    return memory;
}

void operator delete[](void* memory) noexcept {
    if (arrays.watched && memory)
        --arrays.live;
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    operator delete[](memory);
}
