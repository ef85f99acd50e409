/* SPDX-License-Identifier: MIT */
#include "vexaoc_layout.h"

CHECK_SIZE(vexacm_version, 12);
CHECK_FIELD(vexacm_version, major, 0, uint32_t);
CHECK_FIELD(vexacm_version, minor, 4, uint32_t);
CHECK_FIELD(vexacm_version, patch, 8, uint32_t);

typedef char size_of_bool[sizeof(bool) == 1 ? 1 : -1];
