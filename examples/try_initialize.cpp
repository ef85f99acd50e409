// SPDX-License-Identifier: MIT
#include "try_initialize.h"

#include <cstdio>
#include <exception>
#include <vexacm.h>

bool try_initialize(const char* directory) {
    try {
        return vexacm_initialize_libraries(directory);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: cannot be used: %s\n", directory, error.what());
        return false;
    }
}
