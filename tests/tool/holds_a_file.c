/* SPDX-License-Identifier: MIT */
/* No compiler at all, but it opens a file as soon as it is loaded. */
#include <fcntl.h>

__attribute__((constructor)) static void hold(void) {
    open("held", O_WRONLY | O_CREAT, 0600);
}
