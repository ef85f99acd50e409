/* SPDX-License-Identifier: MIT */
#ifndef BENCH_PLUGIN_H
#define BENCH_PLUGIN_H

/**
 * @file
 * What the plug-in of the benchmarks exports beside the five functions. It
 * reports 24 cores and one compiler type, and its compiles do nothing.
 */

#include "vexaoc.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Reports that many cores from now on, each of another revision. */
VEXAOC_API void bench_plugin_set_cores(uint32_t count);

/** Calls it with every request from now on. */
VEXAOC_API void bench_plugin_on_compile(void (*callback)(const vexaoc_inputs*));

#ifdef __cplusplus
}
#endif

#endif
