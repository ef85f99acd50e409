// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "plugin_directory.hpp"
#include "process.hpp"

/// Runs programs in an empty folder of their own, beside four compilers:
///
/// 0 Vexa-K300_r5p0-06rel0, Vexa-K580, OpenCL 2.0
/// 1 Vexa-K300_r5p0-06rel0, Vexa-K580, OpenGL ES 3.2
/// 2 Vexa-K300_r5p0-06rel0, Vexa-K460, OpenGL ES 3.2
/// 3 Vexa-K300_r1p0-00rel0, Vexa-K420, OpenGL ES 3.0; no binaries, no rotation
///
/// All say "1:2: warning" about a source with WARN in it; what else a source
/// brings about stands in the constructor.
class Tool_test : public testing::Test {
protected:
    Tool_test();

    /// Runs the tool with the plug-ins.
    Process_result vexacm(std::vector<std::string> arguments, std::string_view input = "",
                          std::string_view setup = "") const;

    /// Runs any program.
    Process_result run_here(const std::vector<std::string>& arguments, std::string_view input = "",
                            std::string_view setup = "") const;

    /// A file in the folder of the run.
    std::string path(std::string_view name) const;
    void add_source(std::string_view name, std::string_view text = "void main() {}") const;
    std::vector<std::string> files() const;

    /// What the plug-ins were asked to compile since the last call, a line each.
    std::string take_requests();

    Plugin_directory plugins;
};

/// Compares all that a program gave.
void expect(const Process_result& result, int status, std::string_view out, std::string_view err,
            const char* file = __builtin_FILE(), int line = __builtin_LINE());

/// What the tool says when it takes no part in a command line.
std::string usage_error(std::string_view text);
