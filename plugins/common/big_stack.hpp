// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace plugin {

// Runs the task on a thread of its own with a large stack and waits for it. What the task throws
// arrives here; without memory for the thread it is std::bad_alloc.
void run_on_big_stack(const std::function<void()>& task);

} // namespace plugin
