// SPDX-License-Identifier: MIT
#include "subject.hpp"

namespace {

std::string undeclared(const std::string& name, int line) {
    return "ERROR: 0:" + std::to_string(line) + ": '" + name + "' : undeclared identifier";
}

Subject glsl_plugin() {
    const std::string start = "#version 310 es\nprecision highp float;\nuniform float a;\n"
                              "uniform int i;\nuniform vec4 v;\nlayout(location = 0) out vec4 c;\n";
    Subject subject;
    subject.file = PLUGIN_FILE;
    subject.entries = {"compiler_type",      "openglessl", //
                       "openglessl_version", "100",        //
                       "openglessl_version", "300",        //
                       "openglessl_version", "310",        //
                       "openglessl_version", "320",        //
                       "flexible_version",   "1.0.0",      //
                       "prerotate",          "false"};
    subject.shader_type = "fragment";
    subject.other_shader_types = {"kernel", "Vertex", ""};
    subject.other_api = "opencl";
    subject.function = "void main()";
    subject.statement = "gl_FragColor = vec4(0.0);";
    subject.undeclared = undeclared;
    subject.too_many_bytes = "ERROR: the source has more than 1048576 bytes";
    subject.too_many_macros = "ERROR: macros expand to more than 500000 tokens";
    subject.directory = SOURCE_DIRECTORY;
    subject.clean_sources = {"textured_100.vert", "textured_100.frag",  "lit_300.vert",
                             "lit_300.frag",      "instanced_310.vert", "layered_310.frag",
                             "switches_310.frag", "particles_310.comp", "wireframe_310.geom",
                             "terrain_310.tesc",  "terrain_310.tese",   "instanced_320.vert",
                             "layered_320.frag",  "particles_320.comp", "wireframe_320.geom",
                             "terrain_320.tesc",  "terrain_320.tese"};
    subject.target_environment = "opengl4.5";
    subject.newest_spirv = 0x00010000;
    subject.noisy_sources = {"#extension X\n#pragma \xff\n#if (\n\""};
    subject.repeated = {"(",      "-",         "a+",   "a,",      "{",     "[",
                        "[0]",    "if(b)",     "a?",   "x=",      "else ", "sin(",
                        "v.xyzw", "struct S{", "\\\n", "#if 1\n", "D(",    "\xff"};
    subject.frames = {
        {"", ""},
        {start, ""},
        {start + "void main() { float x = a; bool b = a > 0.0; x = ", " c = vec4(x); }\n"},
        {"#define D(x) x x\n#if ", "\n#endif\nvoid main() {}"},
        {"#define M ", "\n#if M\n#endif\nvoid main() {M}"},
        {"#define D(x) ", "\nvoid main() { D() D(1) D(D(2)) }"},
    };
    return subject;
}

} // namespace

const Subject SUBJECT = glsl_plugin();
