// SPDX-License-Identifier: MIT
#include "counting_new.hpp"

#include <cstdlib>
#include <new>

namespace {

long allocations_left = 0; // until one fails; 0: none fails
bool failed = false;

void* allocate(std::size_t size) noexcept {
    if (allocations_left > 0 && --allocations_left == 0) {
        failed = true;
        return nullptr;
    }
    return std::malloc(size ? size : 1);
}

void* allocate_or_throw(std::size_t size) {
    void* const memory = allocate(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

} // namespace

Failing_allocation::Failing_allocation(long number) {
    failed = false;
    allocations_left = number;
}

Failing_allocation::~Failing_allocation() {
    allocations_left = 0;
}

bool Failing_allocation::has_failed() {
    return failed;
}

void* operator new(std::size_t size) {
    return allocate_or_throw(size);
}

void* operator new[](std::size_t size) {
    return allocate_or_throw(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
