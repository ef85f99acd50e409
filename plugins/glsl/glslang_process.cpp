// SPDX-License-Identifier: MIT
#include "glslang_process.hpp"

#include <glslang/Public/ShaderLang.h>

#include <atomic>
#include <new>
#include <vector>

#include <pthread.h>

namespace {

std::vector<pthread_key_t> keys;
std::atomic<bool> usable = true;

class Process {
public:
    Process() { glslang::InitializeProcess(); }
    ~Process() {
        if (usable)
            glslang::FinalizeProcess();
        for (const pthread_key_t key : keys)
            pthread_key_delete(key);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
};

} // namespace

namespace glsl {

void use_glslang() {
    if (!usable)
        throw std::bad_alloc();
    static const Process process;
}

void set_unusable() noexcept {
    usable = false;
}

} // namespace glsl

// glslang never gives its thread keys back, and a process has 1024 of them: a caller that opens
// and closes the plug-in again and again would run out. So they are noted here and deleted above.
// Keeping the plug-in mapped for ever (-z nodelete) would help too, at the price of its memory.
extern "C" {

int __real_pthread_key_create(pthread_key_t* key, void (*destructor)(void*));

int __wrap_pthread_key_create(pthread_key_t* key, void (*destructor)(void*)) {
    keys.reserve(keys.size() + 1);
    const int error = __real_pthread_key_create(key, destructor);
    if (error == 0)
        keys.push_back(*key);
    return error;
}

} // extern "C"
