/* SPDX-License-Identifier: MIT
 *
 * One life of the library in steps, from before its initialisation to after its
 * release. Each step writes what it learns as text; what the library and the
 * plug-ins say goes to standard error. */
#ifndef HOST_SCENARIO_H
#define HOST_SCENARIO_H

#include <stdio.h>

#include "vexacm.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { NUM_STEPS = 9, STEP_INITIALISED = 2, MOST_COMPILERS = 16 };

typedef struct {
    const char* root; /* of the plug-ins */
    unsigned int* ids;
    unsigned int count;
    vexaoc_outputs outputs[MOST_COMPILERS];
    unsigned int num_outputs;
} Scenario;

/* Runs a step; they are to be run in order, from 0. The library is initialised
 * from STEP_INITIALISED on. */
void run_step(Scenario* scenario, int step, FILE* out);

#ifdef __cplusplus
}
#endif

#endif
