// SPDX-License-Identifier: MIT
#include "host_test.hpp"

#include <cstdlib>

void PrintTo(const Seen& seen, std::ostream* stream) {
    *stream << "-- results\n" << seen.results << "-- standard error\n" << seen.err;
}

Seen see_step(Scenario& scenario, int step) {
    char* text = nullptr;
    std::size_t size = 0;
    FILE* const out = open_memstream(&text, &size);
    Seen seen;
    seen.err = stderr_of([&] { run_step(&scenario, step, out); });
    std::fclose(out);
    seen.results.assign(text, size);
    std::free(text);
    return seen;
}

Seen see_steps(Scenario& scenario, int begin, int end) {
    Seen seen;
    for (int step = begin; step < end; ++step)
        seen += see_step(scenario, step);
    return seen;
}

Host_test::Host_test() {
    const auto with_outputs = [](Fake_plugin plugin) {
        plugin.binary_output(1).core("k58x", "r1p2_1234rel5").core("k30x", "r1p2_1233rel5");
        for (int result = 1; result <= 4; ++result)
            plugin.outputs("result " + std::to_string(result)).result(result).say("failing");
        plugin.outputs("cl_khr_").a("#error cl_khr_fp64").a("#error cl_qrx_printf");
        plugin.outputs("good").list().item("1,234").item(nullptr).list().binary("\1\xff");
        return plugin.a("0:1: error").a("").b(nullptr).b("warning");
    };
    plugins.add_driver("openglessl", NEWEST,
                       with_outputs(gles_plugin("1234567", nullptr).pair("foo", "1234567")));
    plugins.add_driver("opencl", MIDDLE, with_outputs(opencl_plugin("200", nullptr)));
    plugins.add("openglessl", "libother.so", with_outputs(gles_plugin("300")));
    plugins.add_driver("openglessl", "Vexa-K300_r7p0-00rel0",
                       gles_plugin().api_version(1234567, 2345678, 3456789));
    plugins.add_driver("opencl", "Vexa-K300_r8p0-00rel0",
                       opencl_plugin().pair("flexible_version", "1234567.2345678.3456789"));
    plugins.add_file("opencl", "notes.so.txt", "no library");
}

Scenario Host_test::begin_scenario() const {
    Scenario scenario = {};
    scenario.root = plugins.root().c_str();
    return scenario;
}

Seen Host_test::plain(const std::string& root) {
    Scenario scenario = {};
    scenario.root = root.c_str();
    return see_steps(scenario, 0, NUM_STEPS);
}
