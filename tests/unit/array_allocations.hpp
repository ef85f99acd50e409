// SPDX-License-Identifier: MIT
#pragma once

/// The allocation of arrays in a program that links this: it fills what it
/// gives with junk, and, while it is watched, counts and fails when told to.
struct Array_allocations {
    bool watched = false;
    long made = 0;
    long live = 0;
    long failing = -1; ///< the one that fails, from 0
};

extern Array_allocations arrays;
