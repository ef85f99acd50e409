// SPDX-License-Identifier: MIT
#include <algorithm>
#include <new>
#include <stdexcept>

#include "api_test.hpp"
#include "counting_new.hpp"

namespace {

// Memory that runs out at every place where it can.
using OutOfMemory = Api_test;

enum class Outcome { THREW, COPED, NOT_REACHED };

// Runs `action`, which must not allocate on its own account, while that
// allocation fails.
template <class Action>
Outcome run_out_of_memory(long allocation, Action action) {
    bool threw = false;
    {
        const Failing_allocation failing(allocation);
        try {
            action();
        } catch (const std::bad_alloc&) {
            threw = true;
        }
    }
    if (!Failing_allocation::has_failed())
        return Outcome::NOT_REACHED;
    return threw ? Outcome::THREW : Outcome::COPED;
}

long count_lines(const std::string& log, const char* part) {
    const std::string lines = lines_of(log, part);
    return std::count(lines.begin(), lines.end(), '\n');
}

// Expects a first query that throws to be the last: later ones are answered with
// the empty text and call no plug-in. Returns how many allocations can fail.
long expect_no_second_probe(const Fake_plugin& plugin, const char* api, const Request& request) {
    for (long allocation = 1;; ++allocation) {
        SCOPED_TRACE(allocation);
        One_plugin one(plugin, api);
        Outcome outcome = Outcome::COPED;
        const std::string error = stderr_of(
            [&] { outcome = run_out_of_memory(allocation, [] { vexacm_get_extensions(0); }); });
        EXPECT_EQ(error, "");
        if (outcome == Outcome::NOT_REACHED)
            return allocation - 1;
        EXPECT_EQ(outcome, Outcome::THREW);
        one.take_calls();
        for (int i = 0; i < 2; ++i)
            EXPECT_STREQ(vexacm_get_extensions(0), "");
        EXPECT_EQ(one.take_calls(), "");
        Outputs outputs;
        EXPECT_TRUE(outputs.compile(request));
        EXPECT_NE(outputs.text(), "");
    }
}

TEST_F(OutOfMemory, TheProbeOfOpenGlEsIsNotTriedAgain) {
    Fake_plugin plugin = gles_plugin("310", nullptr);
    plugin.outputs("GL_OES").a("a text that is too long for any short string to hold it").b("b");
    plugin.outputs("").b("warning").binary("bytes");
    EXPECT_GT(expect_no_second_probe(plugin, "openglessl", Request()), 24);
}

TEST_F(OutOfMemory, TheProbeOfOpenClIsNotTriedAgain) {
    Fake_plugin plugin = opencl_plugin("200", nullptr);
    plugin.outputs("").a("cl_khr_fp64").a("cl_khr_fp16 cl_khr_icd").list().item("x").b("b");
    EXPECT_GT(expect_no_second_probe(plugin, "opencl", Request("kernel").kernels({"k"})), 10);
}

TEST_F(OutOfMemory, TheProbeForARequestIsNotTriedAgain) {
    long allocation = 1;
    for (Outcome outcome = Outcome::THREW; outcome != Outcome::NOT_REACHED; ++allocation) {
        SCOPED_TRACE(allocation);
        One_plugin one(gles_plugin("310", nullptr));
        Outputs outputs;
        const Request request("geometry");
        outcome = run_out_of_memory(allocation, [&] { outputs.compile(request); });
        if (outcome == Outcome::NOT_REACHED)
            break;
        EXPECT_EQ(outcome, Outcome::THREW);
        EXPECT_TRUE(outputs.is_zeroed());
        // While the request itself was put together, the probe was complete.
        const bool probed = count_lines(one.take_calls(), "compile ") == 24;
        if (!probed) {
            EXPECT_STREQ(vexacm_get_extensions(0), "");
            EXPECT_EQ(stderr_of([&] { EXPECT_FALSE(outputs.compile(request)); }),
                      "Compiler Manager Error: Compiler must support extension "
                      "GL_EXT_geometry_shader to use geometry shaders.\n");
            EXPECT_EQ(one.take_calls(), "");
        }
    }
    EXPECT_GT(allocation, 24);
}

TEST_F(OutOfMemory, ACompileLeavesARecordThatCanBeReleased) {
    Fake_plugin plugin = opencl_plugin();
    plugin.pair("prerotate", "true").outputs("").list().item("x").item("y").list().list().item("z");
    One_plugin one(plugin.a("a").a("b").b("c").b("d").binary("bytes"), "opencl");
    const std::string whole = "list(x,y) list() list(z) binary(6279746573) a(a,b) b(c,d)";
    const Request request = Request("kernel").kernels({"k", "l"}).define({"A"});
    long allocation = 1;
    long during_copy = 0;
    for (;; ++allocation) {
        SCOPED_TRACE(allocation);
        Outputs outputs;
        const Outcome outcome = run_out_of_memory(allocation, [&] { outputs.compile(request); });
        const std::string log = one.take_calls();
        if (outcome == Outcome::NOT_REACHED) {
            EXPECT_EQ(outputs.text(), whole);
            break;
        }
        EXPECT_EQ(outcome, Outcome::THREW);
        // What is there can be read and released; the rest is missing.
        EXPECT_NE(outputs.text(), whole);
        EXPECT_EQ(stderr_of([&] { outputs.release(); }), "");
        // Outputs that could not be copied are not handed back.
        EXPECT_EQ(count_lines(log, "release_outputs"), 0);
        if (log.empty())
            EXPECT_EQ(during_copy, 0);
        else
            ++during_copy;
        EXPECT_TRUE(outputs.compile(request));
        EXPECT_EQ(outputs.text(), whole);
        one.take_calls();
    }
    EXPECT_GT(allocation - 1, during_copy);
    // Texts, their arrays, the lists and the binary.
    EXPECT_EQ(during_copy, 7 + 5 + 1 + 1);
}

TEST_F(OutOfMemory, AnInitialisationLeavesTheEarlierCatalogueAndNoPluginOpen) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin().core("k58x", "r0p0_00rel0"));
    EXPECT_EQ(initialise(), "");
    const std::string listed = catalogue();

    Plugin_directory others;
    Fake_plugin plugin = gles_plugin("320", "a name that is too long for any short string");
    plugin.pair("openglessl_version", "310").pair("compiler_type", "opencl").core("k42x", "r0");
    others.add_driver("openglessl", NEWEST, plugin);
    others.add_driver("opencl", MIDDLE, plugin);
    // The last one fails when all else went well: a second catalogue would leave
    // the first one unreachable.
    others.add_driver("openglessl", OLDEST, gles_plugin("none"));
    const char* const root = others.root().c_str();
    long threw = 0;
    for (long allocation = 1;; ++allocation) {
        SCOPED_TRACE(allocation);
        bool last_one_failed = false;
        Outcome outcome = Outcome::COPED;
        const std::string error = stderr_of([&] {
            outcome = run_out_of_memory(allocation, [&] {
                try {
                    vexacm_initialize_libraries(root);
                } catch (const std::invalid_argument&) {
                    last_one_failed = true;
                }
            });
        });
        EXPECT_EQ(error, "");
        EXPECT_NE(outcome == Outcome::THREW, last_one_failed);
        const std::string log = others.take_log();
        EXPECT_EQ(count_lines(log, " get_capabilities"), count_lines(log, " release_capabilities"));
        EXPECT_EQ(count_lines(log, " load"), count_lines(log, " unload"));
        EXPECT_EQ(catalogue(), listed);
        if (outcome == Outcome::NOT_REACHED)
            break;
        threw += outcome == Outcome::THREW;
    }
    EXPECT_GT(threw, 20);
}

TEST_F(OutOfMemory, AQueryWritesNeitherOutput) {
    const One_plugin one(gles_plugin().core("k58x", "r0p0_00rel0").core("k42x", "r0p0_00rel0"));
    unsigned int none = 0;
    long allocation = 1;
    for (;; ++allocation) {
        SCOPED_TRACE(allocation);
        unsigned int* ids = &none;
        unsigned int count = 77;
        const Outcome outcome = run_out_of_memory(allocation, [&] {
            vexacm_get_compilers(&ids, &count, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
        });
        if (outcome == Outcome::NOT_REACHED) {
            EXPECT_EQ(count, 3u);
            vexacm_release_compilers(&ids, count);
            break;
        }
        EXPECT_EQ(outcome, Outcome::THREW);
        EXPECT_EQ(ids, &none);
        EXPECT_EQ(count, 77u);
    }
    EXPECT_GT(allocation, 1);
}

TEST_F(OutOfMemory, WhatDoesNotAllocateCannotRunOutOfMemory) {
    const One_plugin one(gles_plugin());
    vexaoc_outputs record;
    vexacm_version version;
    unsigned int* ids = nullptr;
    const std::string error = stderr_of([&] {
        EXPECT_EQ(run_out_of_memory(1,
                                    [&] {
                                        vexacm_get_manager_version(&version);
                                        vexacm_get_driver_name(0);
                                        vexacm_get_core_name(0);
                                        vexacm_get_core_revision(0);
                                        vexacm_get_api_name(0);
                                        vexacm_get_extensions(0);
                                        vexacm_get_highest_api_version(0);
                                        vexacm_is_binary_output_supported(0);
                                        vexacm_is_prerotate_supported(0);
                                        vexacm_release_compilers(&ids, 0);
                                        // Refusals, told without a copy of their text.
                                        vexacm_get_compilers(nullptr, nullptr, nullptr, nullptr,
                                                             nullptr, nullptr, nullptr, 0);
                                        vexacm_compile(&record, "", "none", nullptr, 0, false,
                                                       false, nullptr, 0, 0);
                                        vexacm_compile(&record, "", "kernel", nullptr, 0, false,
                                                       false, nullptr, 0, 0);
                                        vexacm_release_compiler_outputs(&record);
                                        vexacm_release_libraries();
                                        vexacm_get_driver_name(0);
                                    }),
                  Outcome::NOT_REACHED);
    });
    EXPECT_EQ(error, "Compiler Manager Error: NULL inputs passed to get_compilers\n"
                     "Compiler Manager Error: Unknown shader type: none.\n"
                     "Compiler Manager Error: Only OpenCL compilers can compile kernels.\n"
                     "Compiler Manager Error: Please call vexacm_initialize_librariesbefore using "
                     "other functions.\n");
}

} // namespace
