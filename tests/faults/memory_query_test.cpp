// SPDX-License-Identifier: MIT
#include "fault_test.hpp"

namespace {

class MemoryRunsOutAsking : public Fault_test {
protected:
    // Asks for the extensions of the one compiler.
    void extensions_in_scenario(std::string_view api, const Fake_plugin& plugin) {
        plugins.add_driver(api, NEWEST, plugin);
        scenario.before = [this] { EXPECT_EQ(initialise(), ""); };
        scenario.act = [this] {
            extensions = "";
            extensions = vexacm_get_extensions(0);
        };
        scenario.result = [this] { return extensions; };
        // An interrupted probe is not repeated.
        scenario.after_throw = [] {
            EXPECT_EQ(stderr_of([] { EXPECT_STREQ(vexacm_get_extensions(0), ""); }), "");
        };
    }

    const char* extensions = "";
};

TEST_F(MemoryRunsOutAsking, ForCompilers) {
    Fake_plugin plugin = gles_plugin();
    plugins.add_driver("openglessl", NEWEST, plugin.core("k58x", "r1p0_00rel0").binary_output(1));
    plugins.add_driver("opencl", MIDDLE, opencl_plugin());
    unsigned int* ids = nullptr;
    unsigned int count = 77;
    const std::vector<std::pair<Filters, std::string>> queries = {
        {Filters(), "0 1 2 "},
        {{NEWEST, "Vexa-K460", "r0p0_00rel0", "openglessl", "true", 320}, "1 "},
        {{OLDEST}, ""},
        {{nullptr, "Vexa-K300"}, ""},
        {{nullptr, nullptr, "r9"}, ""},
        {{nullptr, nullptr, nullptr, "opencl", "false"}, "2 "},
        {{nullptr, nullptr, nullptr, nullptr, "false", 300}, ""},
    };
    for (const auto& [filters, found] : queries) {
        scenario.before = [&] {
            EXPECT_EQ(initialise(), "");
            count = 77;
        };
        scenario.act = [&, &filters = filters] {
            vexacm_get_compilers(&ids, &count, filters.driver_name, filters.core_name,
                                 filters.core_revision, filters.api_name, filters.binary_output,
                                 filters.api_version);
        };
        scenario.result = [&] {
            std::string text;
            for (unsigned int i = 0; ids && i < count; ++i)
                text += std::to_string(ids[i]) + " ";
            return text;
        };
        scenario.after_throw = [&] {
            EXPECT_EQ(ids, nullptr);
            EXPECT_EQ(count, 77U);
        };
        scenario.undo = [&] { vexacm_release_compilers(&ids, count); };
        run_out_of_memory({found, "", ""});
    }
}

TEST_F(MemoryRunsOutAsking, ForExtensionsOfOpenGlEs) {
    Fake_plugin plugin = gles_plugin("310", nullptr);
    plugin.outputs("GL_ANDROID_extension_pack_es31a").b("a warning");
    plugin.outputs("GL_OES_texture_3D").binary("bytes").list().item("row");
    plugin.outputs("GL_OES").a("a text that is too long for any short string to hold it");
    plugin.outputs("").result(-1);
    extensions_in_scenario("openglessl", plugin);
    run_out_of_memory({"GL_OES_texture_3D GL_ANDROID_extension_pack_es31a "
                       "GL_EXT_color_buffer_half_float GL_EXT_color_buffer_float ",
                       "", ""});
}

TEST_F(MemoryRunsOutAsking, ForExtensionsOfOpenGlEs2) {
    Fake_plugin plugin = gles_plugin("100", nullptr);
    plugin.outputs("es\n").a("no such version").outputs("GL_EXT_shadow_samplers");
    extensions_in_scenario("openglessl", plugin.outputs("").a("no"));
    run_out_of_memory({"GL_EXT_shadow_samplers ", "", ""});
}

TEST_F(MemoryRunsOutAsking, ForExtensionsOfOpenCl) {
    Fake_plugin plugin = opencl_plugin("200", nullptr);
    plugin.outputs("").a("#error cl_khr_fp64").a("another").a("cl_khr_fp16 and cl_khr_icd").b("b");
    extensions_in_scenario("opencl", plugin);
    run_out_of_memory({"cl_khr_fp64 cl_khr_fp16 cl_khr_icd ", "", ""});
}

// These allocate nothing, told or untold.
TEST_F(MemoryRunsOutAsking, ForAllElse) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    vexacm_version version = {};
    vexaoc_outputs record = {};
    unsigned int none = 0;
    unsigned int* ids = &none;
    const auto ask = [&] {
        vexacm_get_manager_version(&version);
        vexacm_get_driver_name(0);
        vexacm_get_core_name(0);
        vexacm_get_core_revision(0);
        vexacm_get_api_name(0);
        vexacm_get_highest_api_version(0);
        vexacm_get_extensions(0);
        vexacm_is_binary_output_supported(0);
        vexacm_is_prerotate_supported(0);
        vexacm_release_compiler_outputs(&record);
    };
    scenario.before = [&] { EXPECT_EQ(initialise(), ""); };
    scenario.act = [&] {
        ask();
        vexacm_get_compilers(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
        vexacm_release_libraries();
        vexacm_release_libraries();
        ask();
        vexacm_get_compilers(&ids, &none, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
        vexacm_release_compilers(&ids, 0);
        vexacm_compile(&record, "", "", nullptr, 0, false, false, nullptr, 0, 0);
    };
    scenario.result = [&] { return std::to_string(version.major) + std::to_string(*ids); };
    std::string err = "Compiler Manager Error: NULL inputs passed to get_compilers\n";
    for (int i = 0; i < 10; ++i)
        err += INITIALIZE_ERROR;
    err += "Please call vexacm_initialize_libraries before trying to get compilers.\n"
           "Please call vexacm_initialize_libraries before trying to release compilers.\n"
           "Please call vexacm_initialize_libraries before trying to compile.\n";
    EXPECT_EQ(scenario.run_out_of_memory({"40", err, ""}), 0);
}

} // namespace
