// SPDX-License-Identifier: MIT
#pragma once

#include "result.hpp"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace vexacm_tool {

/// Where the reports of all results go, each when it is asked for.
struct Report_files {
    std::optional<std::string> sarif;
    std::optional<std::string> junit;
    std::optional<std::string> html;
};

/// Adds the options for them.
void add_report_files(CLI::App& command, Report_files& files);

/// A run may take hours: a report that has no folder is found out before. Throws
/// Failure.
void check_folders(const Report_files& files);

/// Writes them all, whole or not at all; tells which could not be written.
Exit_status write_reports(const Report_files& files, const Result_source& results);

} // namespace vexacm_tool
