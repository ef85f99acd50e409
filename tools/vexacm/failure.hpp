// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace vexacm_tool {

/// What the tool tells its caller; where several hold, the highest.
enum class Exit_status {
    done = 0,
    source_errors = 1,
    wrong_use = 2,
    no_compiler = 3,
    refused = 4,
    input_output = 5,
    interrupted = 130
};

/// Ends the run: main() prints the text and exits with the status.
struct Failure : std::runtime_error {
    Failure(Exit_status exit_status, const std::string& text)
        : std::runtime_error(text), status(exit_status) {}

    Exit_status status;
};

} // namespace vexacm_tool
