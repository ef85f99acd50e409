// SPDX-License-Identifier: MIT
#include "diagnostics.hpp"

namespace {

constexpr const char* OTHER_INTERFACE = "Vexa-K300_r7p0-00rel0";
constexpr const char* OTHER_FLEXIBLE = "Vexa-K300_r8p0-00rel0";

} // namespace

Diagnostics_test::Diagnostics_test() : long_text(100000, 'x') {
    plugins.add_driver("openglessl", OTHER_INTERFACE,
                       gles_plugin().api_version(1234567, 2345678, 3456789));
    plugins.add_driver("openglessl", OTHER_FLEXIBLE,
                       gles_plugin().pair("flexible_version", "1234567.2345678.3456789"));
    Fake_plugin used = gles_plugin("1234567", "GL_X").pair("foo", "1234567");
    used.outputs("").result(2);
    plugins.add("openglessl", "libother.so", used);
    plugins.remove("opencl");
}

void Diagnostics_test::make_diagnostics() {
    EXPECT_TRUE(vexacm_initialize_libraries(plugins.root().c_str()));
    vexacm_get_compilers(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
    {
        Outputs outputs;
        EXPECT_FALSE(outputs.compile(Request("none")));
        EXPECT_FALSE(outputs.compile(Request(long_text.c_str())));
        EXPECT_FALSE(outputs.compile(Request("geometry")));
        EXPECT_FALSE(outputs.compile(Request()));
    }
    vexacm_release_libraries();
    EXPECT_EQ(vexacm_get_driver_name(0), nullptr);
}

std::string Diagnostics_test::expected_diagnostics() const {
    std::string text;
    for (const std::string& name : plugins.listed("openglessl")) {
        const std::string path = plugins.path("openglessl", name);
        if (name.find(OTHER_INTERFACE) != std::string::npos)
            text += "Library at " + path +
                    " has version 1234567.2345678.3456789.\n"
                    "This compiler manager supports library version v1.x.x only. Please upgrade to "
                    "a later compiler manager version.\n";
        else if (name.find(OTHER_FLEXIBLE) != std::string::npos)
            text += "Library at " + path +
                    " uses flexible version 1234567.2345678.3456789.\n"
                    "This compiler manager supports flexible versions v1.x.x, v2.x.x and v3.x.x "
                    "only. Please upgrade to a later compiler manager version.\n";
        else
            text += "Driver name parse error: \"other\" has an unknown name format: Name does not "
                    "begin with \"Vexa-\"\n";
    }
    // The candidates of both subdirectories are collected before any is opened.
    return "Unable to open library directory " + plugins.path("opencl") + "\n" + text +
           "Unknown flexible capability. Key: foo, Value: 1234567\n"
           "Compiler Manager Error: NULL inputs passed to get_compilers\n"
           "Compiler Manager Error: Unknown shader type: none.\n"
           "Compiler Manager Error: Unknown shader type: " +
           long_text +
           ".\n"
           "Compiler Manager Error: Compiler must support extension GL_EXT_geometry_shader to use "
           "geometry shaders.\n"
           "Compiler Manager Error: Invalid Parameters.\n"
           "Compiler Manager Error: Please call vexacm_initialize_librariesbefore using other "
           "functions.\n";
}
