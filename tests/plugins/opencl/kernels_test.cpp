// SPDX-License-Identifier: MIT
// The kernels of the folder beside this file; the number in a name is the language's version.
#include "plugin_test.hpp"
#include "spirv.hpp"

#include <gtest/gtest.h>

namespace {

#ifdef SPIRV_VAL
void expect_valid_binary(const std::string& source) {
    const Compiled compiled = compile(Request(source));
    EXPECT_EQ(compiled.errors, Texts{});
    expect_valid(compiled.binary, SUBJECT.target_environment);
}

TEST(Binary, ChoicesBetweenVectorsPassTheValidator) {
    expect_valid_binary("kernel void k(global float4* v, int n) {\n"
                        "v[0] = n > 0 ? v[1] : v[2]; float4 a = v[3], b = 0;\n"
                        "v[4] = n ? a : b; v[5] = a < b ? a : b; }");
}

TEST(Binary, JumpsAcrossTheSourcePassTheValidator) {
    expect_valid_binary("kernel void k(global int* p, int x) {\n"
                        "goto b; a: x += 1; if (x > 3) goto end; b: x *= 2; goto a; end: p[0] = x;"
                        "}");
}
#endif

TEST(Broken_kernel, AllErrorsAreReportedWithTheirNotes) {
    const Compiled compiled = compile_file("broken_names.cl");
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    const Texts expected = {
        "3:20: error: use of undeclared identifier 'missing'",
        "4:22: error: expected ';' after expression",
        "5:17: error: implicit declaration of function 'shde' is invalid in OpenCL\n"
        "5:17: note: did you mean 'shade'?\n"
        "1:8: note: 'shade' declared here",
    };
    EXPECT_EQ(compiled.errors, expected);
    EXPECT_EQ(compiled.warnings, Texts{});
    EXPECT_TRUE(compiled.binary.empty());
    EXPECT_TRUE(compiled.table.empty());
}

TEST(Broken_kernel, RulesOfTheLanguageAreChecked) {
    const Texts expected = {
        "2:8: error: redefinition of 'inner'\n1:8: note: previous definition is here",
        "3:12: error: kernel must have void return type",
        "3:23: error: pointer arguments to kernel functions must reside in '__global', "
        "'__constant' or '__local' address space",
        "3:54: error: '__private bool' cannot be used as the type of a kernel parameter",
        "5:10: error: declaring variable of type '__private half' is not allowed",
        "5:14: error: half precision constant requires cl_khr_fp16",
        "6:10: error: pointers to functions are not allowed",
        "7:19: error: array subscript is not an integer",
        "4:10: error: use of undeclared label 'nowhere'",
    };
    EXPECT_EQ(compile_file("broken_language.cl").errors, expected);
}

TEST(Broken_kernel, ErrorsAreLimited) {
    std::string source = "kernel void k() {";
    for (int i = 0; i < 300; ++i)
        source += " x" + std::to_string(i) + ";";
    const Texts errors = errors_of(source + "}");
    ASSERT_EQ(errors.size(), 101U);
    EXPECT_EQ(errors.back(), "fatal error: too many errors emitted, stopping now");
}

TEST(Broken_kernel, UndefinedFunctionOrVariableIsAnError) {
    EXPECT_EQ(errors_of("int f(int); int unused(int);\nextern global int v;\n"
                        "kernel void k(global int* p) { p[0] = f(v); }"),
              (Texts{"1:5: error: 'f' is used but not defined",
                     "2:19: error: 'v' is used but not defined"}));
}

TEST(Broken_kernel, FunctionThatIsDefinedLaterIsNone) {
    EXPECT_EQ(errors_of("int f(int); extern constant int v;\n"
                        "kernel void k(global int* p) { p[0] = f(v); }\n"
                        "int f(int x) { return x; } constant int v = 1;"),
              Texts{});
}

TEST(Warnings, ComeWithNotesAndHonourLineDirectives) {
    const Compiled compiled = compile_file("warnings.cl");
    EXPECT_EQ(compiled.errors, Texts{});
    const Texts expected = {
        "4:1: warning: non-void function does not return a value in all control paths",
        "7:15: warning: incompatible pointer to integer conversion assigning to '__global int' "
        "from '__global float *__private'",
        "9:2: warning: take care",
        "100:15: warning: equality comparison result unused\n"
        "100:15: note: use '=' to turn this equality comparison into an assignment",
    };
    EXPECT_EQ(compiled.warnings, expected);
    EXPECT_FALSE(compiled.binary.empty());
}

TEST(Source, EmptyOneHasNoKernels) {
    const Compiled compiled = compile(Request(""));
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    EXPECT_EQ(compiled.errors, Texts{});
    EXPECT_EQ(compiled.table.size(), 1U);
}

TEST(Source, InlineFunctionsAreMade) {
    const Compiled compiled =
        compile(Request("inline int f(int x) { int a[10]; return a[x]; }\n"
                        "static inline int g(int x) { int a[10]; return a[x]; }\n"
                        "kernel void k(global int* p) { p[0] = f(1) + g(2); }"));
    EXPECT_EQ(compiled.errors, Texts{});
    ASSERT_EQ(compiled.table.size(), 2U);
    EXPECT_EQ(compiled.table[1][3], "96"); // the arrays, their indexes and p
}

TEST(Source, CopiesAndFusedOperationsTranslate) {
    EXPECT_EQ(errors_of("kernel void k(global float* f) {\n"
                        "const float table[20] = {1.0f, 2.0f}; float zeros[20] = {0.0f};\n"
                        "f[0] = f[1] * f[2] + f[3] + table[(int)f[4]] + zeros[(int)f[5]]; }"),
              Texts{});
}

TEST(Source, OwnFunctionsMayHaveNamesOfBuiltIns) {
    EXPECT_EQ(errors_of("int __attribute__((overloadable)) max(global int* a, int b) {\n"
                        "return a[b]; }\n"
                        "int __helper(int x) { return x; }\n"
                        "float4 __spirv_ocl_sin(int x) { return x; }\n"
                        "int _Z3dotff(void) { return 1; }\n"
                        "global int __spirv_BuiltInWorkDim = 1;\n"
                        "kernel void k(global int* p) {\n"
                        "p[0] = max(p, 1) + __helper(2) + __spirv_ocl_sin(1).x + _Z3dotff() +\n"
                        "__spirv_BuiltInWorkDim; }"),
              Texts{});
}

} // namespace
