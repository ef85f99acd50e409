// SPDX-License-Identifier: MIT
//
// What the built file offers and what it asks for.
#include <gtest/gtest.h>

#include "built_file.hpp"
#include "plugin_directory.hpp"

namespace {

const std::string library = BUILD_DIRECTORY "/libcompiler_manager.so";

std::set<std::string> defined_symbols(const std::string& path) {
    return all_matches(output_of({"nm", "-D", "--defined-only", path}), "[0-9a-f]+ . (.*)\n");
}

const std::set<std::string> fifteen = {
    "vexacm_initialize_libraries",
    "vexacm_release_libraries",
    "vexacm_get_manager_version",
    "vexacm_get_compilers",
    "vexacm_release_compilers",
    "vexacm_get_driver_name",
    "vexacm_get_core_name",
    "vexacm_get_core_revision",
    "vexacm_get_api_name",
    "vexacm_get_highest_api_version",
    "vexacm_get_extensions",
    "vexacm_is_binary_output_supported",
    "vexacm_is_prerotate_supported",
    "vexacm_compile",
    "vexacm_release_compiler_outputs",
};

TEST(Exports, AreTheFifteenFunctionsAndNothingElse) {
    EXPECT_EQ(defined_symbols(library), fifteen);
}

TEST(Exports, AgreeInHeaderAndVersionScript) {
    const std::string header = read_file(SOURCE_DIRECTORY "/include/vexacm.h");
    EXPECT_EQ(all_matches(header, "VEXACM_API [a-z ]*[ *]+([a-z_]+)\\("), fifteen);
    const std::string map = read_file(SOURCE_DIRECTORY "/src/libcompiler_manager.map");
    EXPECT_EQ(all_matches(map, "    ([a-z_]+);"), fifteen);
}

TEST(Imports, AreTheRuntimeLibrariesOnly) {
    const std::set<std::string> allowed = {"libstdc++.so.6", "libgcc_s.so.1",        "libc.so.6",
                                           "libm.so.6",      "ld-linux-x86-64.so.2", "libc++.so.1",
                                           "libc++abi.so.1", "libunwind.so.1"};
    for (const std::string& needed :
         all_matches(output_of({"readelf", "-d", library}), "NEEDED.*\\[(.*)\\]"))
        EXPECT_TRUE(allowed.count(needed)) << needed;
}

TEST(Imports, HaveNothingThatALibraryMustNotDo) {
    const std::set<std::string> imports =
        all_matches(output_of({"nm", "-D", "--undefined-only", library}), " U ([^@\n]*)");
    for (const char* name :
         {"getenv", "secure_getenv", "exit", "_exit", "abort", "printf", "puts", "_ZSt4cout",
          "pthread_create", "signal", "sigaction", "fork", "system", "setlocale"})
        EXPECT_FALSE(imports.count(name)) << name;
    EXPECT_TRUE(imports.count("dlopen"));
}

TEST(File, IsVersioned) {
    const std::string dynamic = output_of({"readelf", "-d", library});
    EXPECT_EQ(all_matches(dynamic, "SONAME.*\\[(.*)\\]"),
              std::set<std::string>{"libcompiler_manager.so.4"});
    EXPECT_EQ(output_of({"readlink", library}), "libcompiler_manager.so.4\n");
    EXPECT_EQ(output_of({"readlink", library + ".4"}), "libcompiler_manager.so.4.0.2\n");
}

TEST(PlainCompilerCall, BuildsAWorkingLibrary) {
    Plugin_directory directory;
    const std::string built = directory.root() + "/libplain.so";
    output_of({"/bin/sh", "-c",
               CXX_COMPILER " -std=c++17 -shared -fPIC -I" SOURCE_DIRECTORY
                            "/include " SOURCE_DIRECTORY "/src/*.cpp -o " +
                   built});
    directory.add_driver("opencl", "Vexa-K300_r5p0-06rel0",
                         Fake_plugin::of_type("opencl").core("k46x", "r0p0_00rel0"));

    const std::string caller = directory.root() + "/caller.c";
    write_file(caller, "#include <stdio.h>\n"
                       "#include \"vexacm.h\"\n"
                       "int main(int count, char** arguments) {\n"
                       "    unsigned int* ids;\n"
                       "    unsigned int number;\n"
                       "    (void)count;\n"
                       "    vexacm_initialize_libraries(arguments[1]);\n"
                       "    vexacm_get_compilers(&ids, &number, 0, 0, 0, 0, 0, 0);\n"
                       "    printf(\"%u %s\\n\", number, vexacm_get_core_name(ids[0]));\n"
                       "    vexacm_release_compilers(&ids, number);\n"
                       "    vexacm_release_libraries();\n"
                       "    return 0;\n"
                       "}\n");
    output_of({"cc", "-std=c99", "-I" SOURCE_DIRECTORY "/include", caller, built,
               "-Wl,-rpath," + directory.root(), "-o", directory.root() + "/caller"});
    EXPECT_EQ(output_of({directory.root() + "/caller", directory.root()}), "1 Vexa-K460\n");
}

} // namespace
