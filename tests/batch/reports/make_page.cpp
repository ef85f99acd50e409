// SPDX-License-Identifier: MIT
// Writes a page for browsers to show, and the sources in it, into the working folder:
//
//     make_page everything|large PAGE
#include "report_test.hpp"
#include "reports/html.hpp"

#include <filesystem>
#include <fstream>

namespace {

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

/// 3,000 sources with 40 compilers, some of them alike.
class Large_run : public vexacm_tool::Result_source {
public:
    static constexpr unsigned int SOURCES = 3000;
    static constexpr unsigned int COMPILERS = 40;

    static std::string source(unsigned int number) {
        return "shaders/group" + std::to_string(number / 100) + "/shader" + std::to_string(number) +
               ".frag";
    }

    void for_each(const std::function<void(const Result&)>& visit) const override {
        for (unsigned int source = 0; source < SOURCES; ++source)
            for (unsigned int compiler = 0; compiler < COMPILERS; ++compiler)
                visit(result(source, compiler / 10, compiler % 10));
    }

private:
    static Result result(unsigned int number, unsigned int driver, unsigned int core) {
        Result result;
        result.source = source(number);
        result.stage = "fragment";
        result.compiler = {"Vexa-K300_r" + std::to_string(9 - driver) + "p0-00rel0",
                           "Vexa-K" + std::to_string(900 - 20 * core), "r0p0_00rel0", "openglessl",
                           320};
        result.outcome = Outcome::compiled;
        if (number % 17 == 3 && driver > number % 3)
            add_errors(result, number);
        else if (number % 101 == 50 && core == 4)
            result.outcome = Outcome::crashed;
        else
            add_statistics(result, number, driver + core / 3);
        return result;
    }

    static void add_errors(Result& result, unsigned int number) {
        result.outcome = Outcome::errors;
        for (unsigned int i = 0; i <= number % 4; ++i)
            result.errors.push_back("ERROR: 0:" + std::to_string(7 + number % 50 + 3 * i) +
                                    ": 'name" + std::to_string(number) +
                                    "' : undeclared identifier");
    }

    static void add_statistics(Result& result, unsigned int number, unsigned int generation) {
        if (number % 29 == 5)
            result.warnings = {"WARNING: 0:3: 'a' : is not used"};
        result.binary_size = 4096 + 16 * number + generation;
        result.tables = {{"statistic", "count"}};
        for (const char* const name : {"inputs", "outputs", "uniforms", "samplers", "instructions",
                                       "arithmetic instructions", "texture instructions"})
            result.tables.push_back({name, std::to_string((number * 7 + generation) % 97)});
    }
};

void write_large(std::ostream& page) {
    for (unsigned int number = 0; number < Large_run::SOURCES; ++number)
        write_source(Large_run::source(number), long_source(number));
    vexacm_tool::write_html(Large_run(), page);
}

void write_everything(std::ostream& page) {
    write_source("shaders/a.frag", "void main() {}\n");
    write_source("shaders/broken.frag", long_source(1));
    write_source("kernels/k.cl", "kernel void run(\n    global int* p) {\n    x = 1;\n}\n");
    write_source("odd \"name\" &<1>\n%#?:\xff\u202E.frag",
                 "</script><script>document.title = 'owned'</script>\n"
                 "<img src=x onerror=\"document.title='owned'\"> \u202E/* \u2066 \u2028 */\n"
                 "\x01\xff\r\n<!--<script>");
    vexacm_tool::write_html(some_of_everything(), page);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    std::ofstream page(argv[2]);
    if (argv[1] == std::string("large"))
        write_large(page);
    else
        write_everything(page);
    return page.flush() ? 0 : 1;
}
