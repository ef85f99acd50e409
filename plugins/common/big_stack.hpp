// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>

namespace plugin {

// Runs the task on a thread of its own with a stack of that size and waits for it: compilers are
// recursive, and the caller's thread may have little stack. The size is address space only; pages
// are taken when they are touched, some 100 kB for a usual source. What the task throws arrives
// here; without memory for the thread it is std::bad_alloc.
void run_on_big_stack(std::size_t stack_size, const std::function<void()>& task);

} // namespace plugin
