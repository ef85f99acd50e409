// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// How a program ended and all that it wrote.
struct Process_result {
    int status; ///< exit status, or 128 + the signal that ended it
    std::string out;
    std::string err;
};

/// Runs a program, `arguments[0]`, to its end. `setup`, a line of shell run
/// before it, may redirect or limit: "exec >/dev/full", "ulimit -n 10".
Process_result run(const std::vector<std::string>& arguments, std::string_view input = "",
                   std::string_view setup = "");
