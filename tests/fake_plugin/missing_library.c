/* SPDX-License-Identifier: MIT */
int fake_missing_function(void);
int fake_missing_function(void) {
    return 1;
}
