// SPDX-License-Identifier: MIT
#include "failing_calls.hpp"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include <dirent.h>
#include <dlfcn.h>

// The linker sends what our own objects call to __wrap_..., and what is called
// __real_... here to the function itself (--wrap in CMakeLists.txt).
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
char* __real_strdup(const char* text);
DIR* __real_opendir(const char* path);
dirent* __real_readdir(DIR* directory);
void* __real_dlopen(const char* path, int mode);
void* __real_dlsym(void* handle, const char* name);
char* __real_dlerror();
}

namespace {

bool watched = false;
Call failing_call = Call::ALLOCATION;
long calls_left = 0; // until one fails; 0: none fails
bool failed = false;
bool open_failed = false;
long num_blocks = 0;

// Looked up at once: a call of dlsym() ends the life of what dlerror() returned.
const auto next_fwrite =
    reinterpret_cast<decltype(&std::fwrite)>(__real_dlsym(RTLD_NEXT, "fwrite"));

bool fails(Call call) {
    if (call != failing_call || calls_left == 0 || --calls_left > 0)
        return false;
    failed = true;
    return true;
}

void* no_memory() {
    errno = ENOMEM;
    return nullptr;
}

// Stands before every block, in memory that free() writes over.
struct alignas(std::max_align_t) Head {
    enum Form : unsigned { SINGLE = 0x51a61e00, ARRAY = 0xa88a1000 };
    Form form;
    bool counted;
    std::size_t size;
};

void* allocate(std::size_t size, Head::Form form) noexcept {
    if (fails(Call::ALLOCATION))
        return no_memory();
    auto* const head = static_cast<Head*>(__real_malloc(sizeof(Head) + size));
    if (!head)
        std::abort();
    *head = {form, watched, size};
    num_blocks += watched;
    return std::memset(head + 1, 0xA5, size);
}

void* allocate_or_throw(std::size_t size, Head::Form form) {
    void* const memory = allocate(size, form);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void release(void* memory, Head::Form form) noexcept {
    if (!memory)
        return;
    Head* const head = static_cast<Head*>(memory) - 1;
    if (head->form != form) {
        std::fputs("freed twice, or in another way than allocated\n", stderr);
        std::abort();
    }
    num_blocks -= head->counted;
    std::memset(memory, 'X', head->size);
    asm volatile("" : : "r"(memory) : "memory"); // or the line above is left out
    std::free(head);
}

} // namespace

Failing_call::Failing_call(Call call, long number) {
    failed = false;
    open_failed = false;
    failing_call = call;
    calls_left = number;
    watched = true;
}

Failing_call::~Failing_call() {
    calls_left = 0;
    watched = false;
}

bool Failing_call::has_failed() {
    return failed;
}

long blocks_left() {
    return num_blocks;
}

void* operator new(std::size_t size) {
    return allocate_or_throw(size, Head::SINGLE);
}

void* operator new[](std::size_t size) {
    return allocate_or_throw(size, Head::ARRAY);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, Head::SINGLE);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, Head::ARRAY);
}

void operator delete(void* memory) noexcept {
    release(memory, Head::SINGLE);
}

void operator delete[](void* memory) noexcept {
    release(memory, Head::ARRAY);
}

void operator delete(void* memory, std::size_t) noexcept {
    release(memory, Head::SINGLE);
}

void operator delete[](void* memory, std::size_t) noexcept {
    release(memory, Head::ARRAY);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
    release(memory, Head::SINGLE);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    release(memory, Head::ARRAY);
}

extern "C" {

void* __wrap_malloc(std::size_t size) {
    return fails(Call::ALLOCATION) ? no_memory() : __real_malloc(size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return fails(Call::ALLOCATION) ? no_memory() : __real_calloc(count, size);
}

void* __wrap_realloc(void* memory, std::size_t size) {
    return fails(Call::ALLOCATION) ? no_memory() : __real_realloc(memory, size);
}

char* __wrap_strdup(const char* text) {
    return fails(Call::ALLOCATION) ? static_cast<char*>(no_memory()) : __real_strdup(text);
}

DIR* __wrap_opendir(const char* path) {
    if (!fails(Call::OPENDIR))
        return __real_opendir(path);
    errno = EMFILE;
    return nullptr;
}

dirent* __wrap_readdir(DIR* directory) {
    if (!fails(Call::READDIR))
        return __real_readdir(directory);
    errno = EIO;
    return nullptr;
}

void* __wrap_dlopen(const char* path, int mode) {
    open_failed = fails(Call::DLOPEN);
    return open_failed ? nullptr : __real_dlopen(path, mode);
}

void* __wrap_dlsym(void* handle, const char* name) {
    return fails(Call::DLSYM) ? nullptr : __real_dlsym(handle, name);
}

char* __wrap_dlerror() {
    static char words[] = "the system says no";
    return open_failed ? words : __real_dlerror();
}

// The C++ library writes with this one, and the linker does not see its calls.
std::size_t fwrite(const void* text, std::size_t size, std::size_t count, std::FILE* stream) {
    if (stream != stderr || !fails(Call::WRITE))
        return next_fwrite(text, size, count, stream);
    errno = ENOSPC;
    return 0;
}

} // extern "C"
