// SPDX-License-Identifier: MIT
#pragma once

#include "../tool/tool_test.hpp"

#include <string>
#include <string_view>
#include <vector>

/// `vexacm batch` with the compilers of Tool_test: for a shader K580, K460 and
/// K420, in this order, for a kernel one.
class Batch_test : public Tool_test {
protected:
    Process_result batch(std::vector<std::string> arguments, std::string_view setup = "") const {
        arguments.insert(arguments.begin(), "batch");
        return vexacm(arguments, "", setup);
    }

    /// Prints the results in job order.
    Process_result ordered(std::vector<std::string> arguments, std::string_view setup = "") const {
        arguments.insert(arguments.begin(), {"--json", "--ordered"});
        return batch(arguments, setup);
    }

    /// Has the newest driver do this to a source with the word in it, and K580 and
    /// K460 with it.
    void on(std::string_view word, std::string_view action, std::string_view said = "");

    /// A line for each result: source, core, outcome, detail and what was printed.
    static std::string brief(std::string_view lines);

private:
    std::string actions;
};

/// Such a line.
std::string line(std::string_view source, std::string_view core, std::string_view outcome,
                 std::string_view rest = "");

/// The three for a shader.
std::string lines(std::string_view source, std::string_view outcome = "compiled");
