// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>

// Whether a file is mapped into this process.
bool is_mapped(const std::string& file);

// The size of this process's address space.
std::size_t mapped_bytes();

// Runs the task on a thread that has so much stack.
void run_with_stack(std::size_t size, std::function<void()> task);

// All that arrives at standard output and standard error while the task runs.
std::string printed_by(const std::function<void()>& task);
