// SPDX-License-Identifier: MIT
#include "fault_test.hpp"

void Fault_test::initialise_in_scenario() {
    scenario.act = [this] {
        was_initialised = false;
        was_initialised = vexacm_initialize_libraries(plugins.root().c_str());
    };
    scenario.result = [this] { return was_initialised ? catalogue() : "not initialised"; };
    scenario.after_throw = [] {
        EXPECT_EQ(stderr_of([] { EXPECT_EQ(vexacm_get_driver_name(0), nullptr); }),
                  INITIALIZE_ERROR);
    };
}

void Fault_test::compile_in_scenario(const Request& request) {
    requested = request;
    scenario.before = [this] { EXPECT_EQ(initialise(), ""); };
    scenario.act = [this] {
        was_compiled = false;
        was_compiled = filled.compile(requested);
    };
    scenario.result = [this] { return (was_compiled ? "true " : "false ") + filled.text(); };
    scenario.undo = [this] { filled.release(); };
}

void Fault_test::run_out_of_memory(const Outcome& whole) {
    EXPECT_GT(scenario.run_out_of_memory(whole), 0);
}

std::string gles_compiler(const std::string& driver_name) {
    return driver_name + " Vexa-K460 r0p0_00rel0 openglessl 320\n";
}

std::string opencl_compiler(const std::string& driver_name) {
    return driver_name + " Vexa-K460 r0p0_00rel0 opencl 200\n";
}
