// SPDX-License-Identifier: MIT
#include <memory>
#include <optional>

#include "compiler_kit.hpp"
#include "fault_test.hpp"
#include "loaded_library.hpp"
#include "vexacm_library_manager.hpp"

namespace {

using VexaCM::Vexacm_library_manager;

// What callers of the fifteen functions do not get to.
using MemoryRunsOutInClasses = Fault_test;

TEST_F(MemoryRunsOutInClasses, AManagerThatIsAskedForAPlugin) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    plugins.add_driver("opencl", NEWEST, opencl_plugin());
    std::unique_ptr<Vexacm_library_manager> manager;
    std::shared_ptr<Library> found;
    std::shared_ptr<Library> none;
    scenario.act = [&] {
        manager = std::make_unique<Vexacm_library_manager>(plugins.root());
        found = manager->get_library(NEWEST, "openglessl");
        none = manager->get_library(NEWEST, "another");
    };
    scenario.result = [&] {
        return !found ? "none"
                      : found->get_driver_name() + " of version " +
                            std::to_string(found->get_parsed_name().version) +
                            (none ? " and another" : "");
    };
    scenario.undo = [&] {
        found.reset();
        none.reset();
        manager.reset();
    };
    run_out_of_memory({std::string(NEWEST) + " of version 6", "", ""});
}

TEST_F(MemoryRunsOutInClasses, ARefusedPlugin) {
    const std::string path = plugins.add_file("opencl", DRIVER_FILE, "a text");
    std::unique_ptr<Library> library;
    bool bound = true;
    int sum = 0;
    scenario.act = [&] {
        library = std::make_unique<Library>(path);
        vexaoc_api_version version;
        library->get_api_version(&version);
        sum = library->get_capabilities(nullptr) + library->release_capabilities(nullptr) +
              library->compile(nullptr, nullptr) + library->release_compilation_result(nullptr);
        bound = library->get_library_functions();
    };
    scenario.result = [&] { return std::to_string(sum) + (bound ? "bound" : ""); };
    scenario.undo = [&] { library.reset(); };
    std::string err = open_error(path);
    for (int i = 0; i < 5; ++i)
        err += "Library not initialized successfully. This function is unavailable.\n";
    run_out_of_memory({"16", err, ""});
}

TEST_F(MemoryRunsOutInClasses, PathsThatAreNoFileNames) {
    std::unique_ptr<Library> library;
    scenario.before = [&] {
        Captured_stderr captured;
        library = std::make_unique<Library>("/none");
    };
    std::string err;
    const auto add_path = [&](const std::string& name) {
        err += driver_name_error(name, "Name does not begin with \"Vexa-\"");
    };
    scenario.act = [&] {
        library->path_to_driver_name("");
        library->path_to_driver_name("/o/");
        library->path_to_driver_name("o");
    };
    add_path("");
    add_path("/o/");
    add_path("o");
    scenario.result = [] { return ""; };
    scenario.undo = [&] { library.reset(); };
    scenario.after_coping = [](const Outcome& outcome) {
        EXPECT_NE(outcome.err.find("has an unknown name format: std::bad_alloc\n"),
                  std::string::npos);
    };
    run_out_of_memory({"", err, ""});
}

TEST_F(MemoryRunsOutInClasses, ACompilerOfAnotherLanguageWithoutAPlugin) {
    Compiler_arguments arguments;
    arguments.api_name = "another";
    arguments.extensions = "";
    std::optional<Compiler> compiler;
    vexaoc_outputs outputs;
    bool compiled = true;
    scenario.act = [&] {
        compiler.emplace(arguments.make());
        compiled =
            compiler->compile(&outputs, "", "geometry", nullptr, 7, false, false, nullptr, 0);
        compiler->get_extensions();
    };
    scenario.result = [&] { return compiled ? "compiled" : compiler->get_extensions(); };
    scenario.undo = [&] { compiler.reset(); };
    run_out_of_memory({"",
                       "Library for this compiler is missing.\n"
                       "Library for this compiler is missing.\n",
                       ""});
}

TEST_F(MemoryRunsOutInClasses, CompilersThatAreCompared) {
    Compiler_arguments arguments;
    std::optional<Compiler> compiler;
    std::string name;
    bool before = false;
    bool matches = false;
    std::uint32_t numbers[6] = {};
    scenario.act = [&] {
        compiler.emplace(arguments.make());
        before = Compiler::before(*compiler, *compiler);
        name = Compiler::get_core_display_name("k46x of a name that is long");
        Compiler::parse_core_name("Vexa-K460", &numbers[0]);
        Compiler::parse_core_revision("r1p2_ 3rel4", &numbers[1]);
        numbers[5] = Compiler::get_actual_highest_api_version("Vexa-K300", "openglessl", {320});
        matches = compiler->matches(nullptr, "Vexa-K460", nullptr, nullptr, nullptr, 0);
    };
    scenario.result = [&] {
        std::string result = name + (before ? ", before" : "") + (matches ? ", matches" : "");
        for (const std::uint32_t number : numbers)
            result += " " + std::to_string(number);
        return result;
    };
    scenario.undo = [&] {
        compiler.reset();
        std::string().swap(name); // assigning would keep the block
    };
    run_out_of_memory({"k46x of a name that is long, before, matches 460 1 2 3 4 310", "", ""});
}

TEST_F(MemoryRunsOutInClasses, ACopyOfATextAndOfNone) {
    const char* copy = nullptr;
    scenario.act = [&] {
        Compiler::string_copy(nullptr, "text");
        Compiler::string_copy(&copy, nullptr);
        Compiler::string_copy(&copy, "text");
    };
    scenario.result = [&] { return copy ? copy : "none"; };
    scenario.after_throw = [&] { EXPECT_EQ(copy, nullptr); };
    scenario.undo = [&] {
        delete[] copy;
        copy = nullptr;
    };
    const std::string error = "Compiler Manager Error: NULL inputs to string_copy.\n";
    run_out_of_memory({"text", error + error, ""});
}

} // namespace
