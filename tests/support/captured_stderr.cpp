// SPDX-License-Identifier: MIT
#include "captured_stderr.hpp"

#include <cstdio>
#include <stdexcept>

#include <sys/mman.h>
#include <unistd.h>

Captured_stderr::Captured_stderr() : saved(dup(2)), file(memfd_create("stderr", 0)) {
    std::fflush(stderr);
    if (saved < 0 || file < 0 || dup2(file, 2) < 0)
        throw std::runtime_error("cannot capture standard error");
}

Captured_stderr::~Captured_stderr() {
    restore();
}

void Captured_stderr::restore() {
    if (file < 0)
        return;
    std::fflush(stderr);
    dup2(saved, 2);
    close(saved);
    close(file);
    file = -1;
}

std::string Captured_stderr::take() {
    std::fflush(stderr);
    std::string text;
    char part[4096];
    lseek(file, 0, SEEK_SET);
    for (ssize_t size; (size = read(file, part, sizeof part)) > 0;)
        text.append(part, static_cast<std::size_t>(size));
    restore();
    return text;
}
