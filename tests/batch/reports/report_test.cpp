// SPDX-License-Identifier: MIT
#include "report_test.hpp"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

constexpr auto UNDECLARED = "ERROR: 0:13: '=' :  cannot convert from 'vec4' to 'vec3'";
constexpr auto ODD_TEXT = "ERROR: 0:2: '</script><b>\"&' : \xff\x1b[31m \u202Ered]]>\u2028 \uFFFE";

void add_shaders(Made_results& results) {
    for (const auto& compiler : {K580, K460, K420})
        results.add("shaders/a.frag", compiler).tables = {{"statistic", "count"}, {"inputs", "3"}};
    for (const auto& compiler : {K580, K460}) {
        Result& broken = results.add("shaders/broken.frag", compiler, Outcome::errors);
        broken.errors = {UNDECLARED, "ERROR: 0:15: 'alhpa' : undeclared identifier\nin a macro\n"};
        broken.warnings = {"WARNING: 0:1: extension is deprecated"};
    }
    Result& old = results.add("shaders/broken.frag", K420, Outcome::errors);
    old.errors = {"ERROR: 0:1: '310 es' : version not supported"};
    for (const auto& compiler : {K580, K460, K420})
        results.add("shaders/warned.frag", compiler).warnings = {"WARNING: 0:7: 'x' : is not used",
                                                                 "without a place"};
    for (const auto& compiler : {K580, K460, K420}) {
        Result& defined = results.add("shaders/a.frag", compiler);
        defined.defines = {"A=1", "B"};
        defined.binary_size = 4096;
    }
}

void add_kernel(Made_results& results) {
    Result& kernel = results.add("kernels/k.cl", K580_CL, Outcome::errors);
    kernel.stage = "kernel";
    kernel.kernels = {"run"};
    kernel.errors = {"3:5: error: use of undeclared identifier 'x'\n2:1: note: here"};
}

void add_faults(Made_results& results) {
    Result& crashed = results.add("faults.frag", K580, Outcome::crashed);
    crashed.detail = "killed by signal 11 (Segmentation fault)";
    crashed.printed = "assertion failed\n\x1b[2J";
    results.add("faults.frag", K460, Outcome::exited).detail = "exit status 3";
    results.add("faults.frag", K420, Outcome::timed_out).detail = "after 10 s";
    results.add("limits.frag", K580, Outcome::out_of_memory).detail = "limit 256 MiB";
    results.add("limits.frag", K460, Outcome::no_binary);
    results.add("limits.frag", K420, Outcome::refused);
    results.add("files.frag", K580, Outcome::unreadable).detail = "Permission denied";
    results.add("files.frag", K460, Outcome::unwritable).detail = "No space left on device";
    results.add("files.frag", K420, Outcome::given_up);
    for (const auto& compiler : {K580, K460, K420})
        results.add("late.frag", compiler, Outcome::not_run);
}

void add_odd_name(Made_results& results) {
    for (const auto& compiler : {K580, K460, K420}) {
        Result& odd =
            results.add("odd \"name\" &<1>\n%#?:\xff\u202E.frag", compiler, Outcome::errors);
        odd.errors = {ODD_TEXT};
        odd.printed = "\x01 printed\r\n";
    }
}

} // namespace

Result& Made_results::add(const std::string& source, const Compiler_name& compiler,
                          Outcome outcome) {
    Result& result = results_.emplace_back();
    result.job = results_.size() - 1;
    result.source = source;
    result.stage = "fragment";
    result.compiler = compiler;
    result.outcome = outcome;
    return result;
}

void Made_results::for_each(const std::function<void(const Result&)>& visit) const {
    for (Result result : results_) {
        result.jobs = results_.size();
        visit(result);
    }
}

Made_results some_of_everything() {
    Made_results results;
    add_shaders(results);
    add_kernel(results);
    add_faults(results);
    add_odd_name(results);
    return results;
}

std::string written(Report* report, const Made_results& results) {
    std::ostringstream out;
    report(results, out);
    return out.str();
}

void expect_golden(const std::string& file, const std::string& text) {
    const std::string path = std::string(GOLDEN_FILES "/") + file;
    if (std::getenv("WRITE_GOLDEN_FILES") != nullptr) {
        std::ofstream(path) << text;
        FAIL() << path << " is written: read it";
    }
    std::ifstream in(path);
    ASSERT_TRUE(in) << path;
    EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(in), {}));
}
