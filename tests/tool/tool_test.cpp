// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

namespace {

Fake_plugin& add_outcomes(Fake_plugin& plugin) {
    plugin.outputs("WARN").b("1:2: warning");
    plugin.outputs("ERROR").a("3:4: error").a("5:6: another").b("1:2: warning");
    plugin.outputs("BINARY").binary(std::string_view("\x00\x01\n\xff", 4));
    plugin.outputs("FAIL").result(9);
    return plugin;
}

Fake_plugin new_driver() {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k46x", "r0p1_00rel0").core("k58x", "r0p0_00rel0").binary_output(1);
    plugin.pair("openglessl_version", "310").pair("openglessl_version", "320");
    plugin.pair("openglessl_extensions", "GL_ONE").pair("openglessl_extensions", "GL_TWO");
    plugin.pair("prerotate", "true");
    return add_outcomes(plugin);
}

Fake_plugin old_driver() {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k42x", "r2p0_02rel1").pair("openglessl_version", "300");
    plugin.pair("openglessl_extensions", "GL_ONE");
    return add_outcomes(plugin);
}

Fake_plugin kernel_driver() {
    Fake_plugin plugin = Fake_plugin::of_type("opencl");
    plugin.core("k58x", "r0p0_00rel0").pair("opencl_version", "200").binary_output(1);
    plugin.pair("opencl_extensions", "cl_khr_fp16");
    return add_outcomes(plugin);
}

} // namespace

Tool_test::Tool_test() {
    plugins.add_driver("openglessl", "Vexa-K300_r5p0-06rel0", new_driver());
    plugins.add_driver("openglessl", "Vexa-K300_r1p0-00rel0", old_driver());
    plugins.add_driver("opencl", "Vexa-K300_r5p0-06rel0", kernel_driver());
    fs::create_directory(path(""));
}

Process_result Tool_test::vexacm(std::vector<std::string> arguments, std::string_view input,
                                 std::string_view setup) const {
    arguments.insert(arguments.begin(), {VEXACM_TOOL, "--plugins", plugins.root()});
    return run_here(arguments, input, setup);
}

Process_result Tool_test::run_here(const std::vector<std::string>& arguments,
                                   std::string_view input, std::string_view setup) const {
    return run(arguments, input, "cd '" + path("") + "' || exit\n" + std::string(setup));
}

std::string Tool_test::path(std::string_view name) const {
    return plugins.root() + "/folder/" + std::string(name);
}

void Tool_test::add_source(std::string_view name, std::string_view text) const {
    write_file(path(name), text);
}

std::vector<std::string> Tool_test::files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path("")))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

std::string Tool_test::take_requests() {
    std::istringstream log(plugins.take_log());
    std::string requests;
    for (std::string line; std::getline(log, line);)
        if (line.find(" compile ") != std::string::npos)
            requests += line + "\n";
    return requests;
}

void expect(const Process_result& result, int status, std::string_view out, std::string_view err,
            const char* file, int line) {
    const testing::ScopedTrace trace(file, line, "expected here");
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(result.out, out);
    EXPECT_EQ(result.err, err);
}

std::string usage_error(std::string_view text) {
    return "vexacm: " + std::string(text) + "\nRun with --help for more information.\n";
}
