// SPDX-License-Identifier: MIT
#pragma once

#include "scenario.hpp"

constexpr const char* INITIALIZE_ERROR =
    "Compiler Manager Error: Please call vexacm_initialize_librariesbefore using other "
    "functions.\n";

/// A scenario with a plug-in directory.
class Fault_test : public Api_test {
protected:
    /// The library is initialised while something fails; the result is the
    /// catalogue.
    void initialise_in_scenario();

    /// Something is compiled while something fails, after an initialisation; the
    /// result is that of the function and the outputs.
    void compile_in_scenario(const Request& request);

    /// Runs out of memory, at some place at least.
    void run_out_of_memory(const Outcome& whole);

    Scenario scenario{plugins};

private:
    bool was_initialised = false;
    bool was_compiled = false;
    Request requested;
    Outputs filled;
};

/// The compiler of gles_plugin() and that of opencl_plugin(), as catalogue()
/// lists them.
std::string gles_compiler(const std::string& driver_name);
std::string opencl_compiler(const std::string& driver_name);
