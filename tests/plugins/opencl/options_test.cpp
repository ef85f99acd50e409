// SPDX-License-Identifier: MIT
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

Texts errors_with(const std::string& source, const std::string& key, const std::string& value) {
    return compile(Request(source).with(key, value)).errors;
}

TEST(Options, OptionsOfACompilerInDefineAreText) {
    EXPECT_EQ(errors_with("#ifdef B\n#error B\n#endif\nkernel void k() { int A; }", "define",
                          "A=a -D B -I/etc"),
              Texts{"4:23: error: expected ';' at end of declaration"});
}

TEST(Options, KernelNamesMustBeKernelsOfTheSource) {
    const std::string source = "void f() {} kernel void a() {} kernel void b() { f(); }";
    const Request request = Request(source)
                                .with("kernel_name", "a")
                                .with("kernel_name", "f")
                                .with("kernel_name", "b")
                                .with("kernel_name", "c")
                                .with("kernel_name", "");
    const Compiled compiled = compile(request);
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    EXPECT_EQ(compiled.errors, (Texts{"error: no kernel named 'f'", "error: no kernel named 'c'",
                                      "error: no kernel named ''"}));
    EXPECT_TRUE(compiled.binary.empty());
    EXPECT_TRUE(compiled.table.empty());
}

TEST(Options, KernelThatIsOnlyDeclaredIsNone) {
    EXPECT_EQ(errors_with("kernel void k();", "kernel_name", "k"),
              Texts{"error: no kernel named 'k'"});
}

TEST(Options, KernelNamesAreNotMissedInASourceWithErrors) {
    EXPECT_EQ(errors_with("#error first\n", "kernel_name", "k"), Texts{"1:2: error: first"});
}

TEST(Options, ErrorsAreTheSameWithoutBinary) {
    Request request("kernel void k(int n) { int a[n]; a[0] = 1; }");
    const Texts errors = compile(request).errors;
    request.binary_output = 0;
    EXPECT_EQ(compile(request).errors, errors);
}

} // namespace
