/* SPDX-License-Identifier: MIT */
int fake_missing_function(void);
int fake_needs_missing_function(void);
int fake_needs_missing_function(void) {
    return fake_missing_function();
}
