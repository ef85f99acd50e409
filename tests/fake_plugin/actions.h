/* SPDX-License-Identifier: MIT
 *
 * What a plug-in may do to the process that it runs in. */
#ifndef FAKE_ACTIONS_H
#define FAKE_ACTIONS_H

#include "steering.h"

/* Does what the second word of a line says; see steering.md. */
void act(const Line* line);

#endif
