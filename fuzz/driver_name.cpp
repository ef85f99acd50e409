// SPDX-License-Identifier: MIT
//
// Driver names, as they are read from paths: a line of the input is a path. Of
// two lines that follow each other, the order is compared too.
#include <sstream>

#include "captured_stderr.hpp"
#include "names.hpp"
#include "target.hpp"
#include "vexacm_vexaoc_library.hpp"

namespace {

using Library = VexaCM::Vexacm_vexaoc_library;

std::string shown(const std::string& name, int core, int revision, int patch, int version,
                  int release) {
    std::ostringstream text;
    text << name << ": " << core << " " << revision << " " << patch << " " << version << " "
         << release << "\n";
    return text.str();
}

/// Refused, for there is no such file; names are read all the same.
Library no_library() {
    const Captured_stderr ignored;
    return Library("/nonexistent/libVexa-K300_r0p0-00rel0.so");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Library library = no_library();
    model::Driver before;
    Library::ParsedDriverName parsed_before;

    std::istringstream lines(std::string(data, data + size));
    for (std::string path; std::getline(lines, path);) {
        const model::Driver driver = model::read_driver(path);
        const std::string complaint = driver.complaint.empty() ? "" : driver.complaint + "\n";
        const std::string err = stderr_of([&] { library.path_to_driver_name(path); });
        const Library::ParsedDriverName& parsed = library.get_parsed_name();
        expect_equal(complaint + shown(driver.name, driver.core, driver.revision, driver.patch,
                                       driver.version, driver.release),
                     err + shown(library.get_driver_name(), parsed.core_id, parsed.revision,
                                 parsed.patch, parsed.version, parsed.release));
        expect_equal(newer(before, driver) ? "first" : "second or equal",
                     parsed.before(parsed_before) ? "second or equal" : "first");
        before = driver;
        parsed_before = parsed;
    }
    return 0;
}
