// SPDX-License-Identifier: MIT
#include "report_files.hpp"

#include "../options.hpp"
#include "../streams.hpp"
#include "reports/html.hpp"
#include "reports/junit.hpp"
#include "reports/sarif.hpp"

#include <filesystem>

namespace vexacm_tool {

namespace {

struct Report {
    const char* option;
    std::optional<std::string> Report_files::*file;
    void (*write)(const Result_source& results, std::ostream& out);
    const char* description;
};

constexpr Report REPORTS[] = {
    {"--sarif", &Report_files::sarif, write_sarif, "File for the diagnostics, in SARIF 2.1.0"},
    {"--junit", &Report_files::junit, write_junit, "File for the jobs as tests, in JUnit's XML"},
    {"--html", &Report_files::html, write_html, "File for a page that shows all"}};

} // namespace

void add_report_files(CLI::App& command, Report_files& files) {
    for (const Report& report : REPORTS)
        add_text(command, report.option, files.*report.file, report.description)->type_name("FILE");
}

void check_folders(const Report_files& files) {
    for (const Report& report : REPORTS) {
        const std::optional<std::string>& file = files.*report.file;
        if (file && !std::filesystem::is_directory(std::filesystem::absolute(*file).parent_path()))
            throw Failure{Exit_status::input_output,
                          "cannot write " + *file + ": there is no such folder"};
    }
}

// A report that fails does not take the others with it.
Exit_status write_reports(const Report_files& files, const Result_source& results) {
    Exit_status status = Exit_status::done;
    for (const Report& report : REPORTS)
        try {
            if (const std::optional<std::string>& file = files.*report.file)
                write_file_atomically(*file,
                                      [&](std::ostream& out) { report.write(results, out); });
        } catch (const Failure& failure) {
            tell(failure.what());
            status = failure.status;
        }
    return status;
}

} // namespace vexacm_tool
