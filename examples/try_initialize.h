/* SPDX-License-Identifier: MIT */
#ifndef TRY_INITIALIZE_H
#define TRY_INITIALIZE_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/* vexacm_initialize_libraries() for callers written in C: false instead of an
 * exception, with its text on standard error. */
bool try_initialize(const char* directory);

#ifdef __cplusplus
}
#endif

#endif
