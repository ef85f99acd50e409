// SPDX-License-Identifier: MIT
// The same headers in C++, and in the other order.
#include <vexaoc.h>

#include <vexacm.h>

#include "caller.c"
