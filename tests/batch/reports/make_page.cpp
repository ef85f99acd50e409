// SPDX-License-Identifier: MIT
// Writes a page for browsers to show, and the sources in it, into the working folder:
//
//     make_page everything|large PAGE
#include "report_test.hpp"
#include "reports/html.hpp"

#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

constexpr unsigned int SOURCES = 3000;
constexpr unsigned int DRIVERS = 4;
constexpr unsigned int CORES = 10;

void write_source(const std::string& name, const std::string& text) {
    const std::filesystem::path path(name);
    if (path.has_parent_path())
        std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
}

std::string long_source(unsigned int number) {
    std::string text = "#version 310 es\nprecision highp float;\n";
    for (unsigned int line = 0; line < 60 + number % 200; ++line)
        text += "vec4 f" + std::to_string(line) + "(vec4 a) { return a * float(" +
                std::to_string(line * number) + "); }\n";
    return text;
}

void add_large_job(Made_results& results, unsigned int source, unsigned int driver,
                   unsigned int core) {
    const Compiler_name compiler{"Vexa-K300_r" + std::to_string(9 - driver) + "p0-00rel0",
                                 "Vexa-K" + std::to_string(900 - 20 * core), "r0p0_00rel0",
                                 "openglessl", 320};
    Result& result = results.add("shaders/group" + std::to_string(source / 100) + "/shader" +
                                     std::to_string(source) + ".frag",
                                 compiler);
    if (source % 17 == 3 && driver > source % 3) {
        result.outcome = Outcome::errors;
        for (unsigned int i = 0; i <= source % 4; ++i)
            result.errors.push_back("ERROR: 0:" + std::to_string(7 + source % 50 + 3 * i) +
                                    ": 'name" + std::to_string(source) +
                                    "' : undeclared identifier");
        return;
    }
    if (source % 101 == 50 && core == 4) {
        result.outcome = Outcome::crashed;
        result.detail = "killed by signal 11 (Segmentation fault)";
        return;
    }
    if (source % 29 == 5)
        result.warnings = {"WARNING: 0:3: 'a' : is not used"};
    result.binary_size = 4096 + 16 * source + driver;
    result.tables = {{"statistic", "count"}};
    for (const char* const name : {"inputs", "outputs", "uniforms", "samplers", "instructions",
                                   "arithmetic instructions", "texture instructions"})
        result.tables.push_back({name, std::to_string((source * 7 + driver + core / 3) % 97)});
}

Made_results large() {
    Made_results results;
    for (unsigned int source = 0; source < SOURCES; ++source)
        for (unsigned int driver = 0; driver < DRIVERS; ++driver)
            for (unsigned int core = 0; core < CORES; ++core)
                add_large_job(results, source, driver, core);
    for (unsigned int source = 0; source < SOURCES; ++source)
        write_source("shaders/group" + std::to_string(source / 100) + "/shader" +
                         std::to_string(source) + ".frag",
                     long_source(source));
    return results;
}

Made_results everything() {
    write_source("shaders/a.frag", "void main() {}\n");
    write_source("shaders/broken.frag", long_source(1));
    write_source("kernels/k.cl", "kernel void run(\n    global int* p) {\n    x = 1;\n}\n");
    write_source("odd \"name\" &<1>\n%#?:\xff\u202E.frag",
                 "</script><script>document.title = 'owned'</script>\n"
                 "<img src=x onerror=\"document.title='owned'\"> \u202E/* \u2066 \u2028 */\n"
                 "\x01\xff\r\n<!--<script>");
    return some_of_everything();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    const Made_results results = std::string(argv[1]) == "large" ? large() : everything();
    std::ofstream page(argv[2]);
    vexacm_tool::write_html(results, page);
    return page.flush() ? 0 : 1;
}
