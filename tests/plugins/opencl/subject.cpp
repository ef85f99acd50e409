// SPDX-License-Identifier: MIT
#include "subject.hpp"

namespace {

std::string undeclared(const std::string& name, int line) {
    return std::to_string(line) + ":32: error: use of undeclared identifier '" + name + "'";
}

Subject opencl_plugin() {
    Subject subject;
    subject.file = PLUGIN_FILE;
    subject.entries = {"compiler_type",    "opencl", //
                       "opencl_version",   "100",    //
                       "opencl_version",   "110",    //
                       "opencl_version",   "120",    //
                       "opencl_version",   "200",    //
                       "opencl_version",   "300",    //
                       "flexible_version", "1.0.0",  //
                       "prerotate",        "false"};
    subject.shader_type = "kernel";
    subject.other_shader_types = {"vertex", "fragment", "compute", "Kernel", ""};
    subject.other_api = "openglessl";
    subject.function = "kernel void k(global int* p)";
    subject.statement = "p[0] = 1;";
    subject.undeclared = undeclared;
    subject.too_many_bytes = "error: the source has more than 1048576 bytes";
    subject.too_many_macros = "1:32: fatal error: macros expand to too many tokens";
    subject.directory = SOURCE_DIRECTORY;
    subject.clean_sources = {"blur_100.cl",  "reduce_100.cl", "histogram_110.cl",
                             "table_120.cl", "queue_200.cl",  "features_300.cl"};
    subject.target_environment = "opencl2.2";
    subject.newest_spirv = 0x00010200;
    subject.noisy_sources = {
        "#pragma \xff\n#pragma unknown\n#if (\n\"",
        "#pragma message \"loud\"\n#warning louder\n#pragma GCC warning \"x\"",
        "#define A 1\n#pragma clang __debug macro A\n#pragma clang __debug diag_mapping\n"
        "#pragma clang __debug sloc_usage\n#pragma clang __debug dump A\n"
        "_Pragma(\"clang __debug macro A\")",
        "kernel void k(int n) { int a[n]; a[0] = 1; }",
    };
    subject.repeated = {"(",      "-",         "n+",      "{",           "[",
                        "[0]",    "if(n)",     "n?",      "n=",          "else ",
                        "sin(",   "struct s{", "\\\n",    "#if 1\n",     "D(",
                        "\xff",   "do ",       "(int)",   "sizeof ",     "&*",
                        "n?n,n:", "\"a\"",     "if(n,n)", "for(n,n;n;)", "__extension__ ",
                        "l:",     "case 1:",   "'a'",     "typedef ",    "#define A A\n"};
    subject.frames = {
        {"", ""},
        {"kernel void k(global int* p, int n) { p[0] = ", " }\n"},
        {"#define D(x) x x\n#if ", "\n#endif\nkernel void k() {}"},
        {"#define D(x) ", "\nkernel void k() { D() D(1) D(D(2)) }"},
    };
    return subject;
}

} // namespace

const Subject SUBJECT = opencl_plugin();
