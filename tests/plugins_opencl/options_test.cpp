// SPDX-License-Identifier: MIT
#include "opencl_test.hpp"

#include <gtest/gtest.h>

namespace {

const char* const SMALL = "kernel void k() {}";
const char* const USES_VALUE = "kernel void k(global int* p) { p[0] = VALUE; }";

int result_of(const std::string& key, const std::string& value) {
    return compile(Request(SMALL).with(key, value)).result;
}

Texts errors_with(const std::string& source, const std::string& key, const std::string& value) {
    return compile(Request(source).with(key, value)).errors;
}

TEST(Opencl_options, DefineWithValueReplacesName) {
    EXPECT_EQ(errors_with(USES_VALUE, "define", "VALUE=7"), Texts{});
    EXPECT_EQ(errors_with(USES_VALUE, "define", "VALUE=(1 + 2 == 3 ? 1 : 2)"), Texts{});
}

TEST(Opencl_options, DefineWithoutValueIsOne) {
    EXPECT_EQ(
        errors_with("#if VALUE != 1\n#error no\n#endif\nkernel void k() {}", "define", "VALUE"),
        Texts{});
}

TEST(Opencl_options, DefineWithEmptyValueIsEmpty) {
    EXPECT_EQ(errors_with("kernel void k() { VALUE }", "define", "VALUE="), Texts{});
}

TEST(Opencl_options, SeveralDefinesHold) {
    const Request request =
        Request("kernel void k() { int i = A + B; }").with("define", "A=1").with("define", "B=A");
    EXPECT_EQ(compile(request).errors, Texts{});
}

TEST(Opencl_options, DefinesLeaveLinesAlone) {
    EXPECT_EQ(errors_with("\nkernel void k() { x; }", "define", "VALUE=7"),
              Texts{"2:19: error: use of undeclared identifier 'x'"});
}

TEST(Opencl_options, DefinesOfAnEarlierCompileAreGone) {
    const Open_plugin plugin;
    ASSERT_EQ(compile(plugin, Request(USES_VALUE).with("define", "VALUE=7")).errors, Texts{});
    EXPECT_EQ(compile(plugin, Request(USES_VALUE)).errors,
              Texts{"1:39: error: use of undeclared identifier 'VALUE'"});
}

TEST(Opencl_options, DefineThatIsNoneIsRefused) {
    for (const char* define : {"", "=", "=1", "7", "7A=1", "A B", "A B=1", " A", "A-B=1", "A(x)=x",
                               "\xc3\xa4=1", "A=1\n#error injected", "A=1\r#error injected", "A\n",
                               "A=\\", "A=/*", "A=1/*2*/", "-I/etc", "-include /etc/passwd"})
        EXPECT_EQ(result_of("define", define), VEXAOC_INVALID_PARAMETERS) << define;
}

TEST(Opencl_options, LineCommentInDefineEndsWithIt) {
    EXPECT_EQ(errors_with(USES_VALUE, "define", "VALUE=7 // seven"), Texts{});
}

TEST(Opencl_options, OptionsOfACompilerInDefineAreText) {
    EXPECT_EQ(errors_with("#ifdef B\n#error B\n#endif\nkernel void k() { int A; }", "define",
                          "A=a -D B -I/etc"),
              Texts{"4:23: error: expected ';' at end of declaration"});
}

TEST(Opencl_options, KernelNamesMustBeKernelsOfTheSource) {
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

TEST(Opencl_options, KernelThatIsOnlyDeclaredIsNone) {
    EXPECT_EQ(errors_with("kernel void k();", "kernel_name", "k"),
              Texts{"error: no kernel named 'k'"});
}

TEST(Opencl_options, KernelNamesAreNotMissedInASourceWithErrors) {
    EXPECT_EQ(errors_with("#error first\n", "kernel_name", "k"), Texts{"1:2: error: first"});
}

TEST(Opencl_options, PrerotateIsTrueOrFalse) {
    EXPECT_EQ(result_of("prerotate", "true"), VEXAOC_SUCCESS);
    EXPECT_EQ(result_of("prerotate", "false"), VEXAOC_SUCCESS);
    EXPECT_EQ(result_of("prerotate", "maybe"), VEXAOC_INVALID_PARAMETERS);
}

TEST(Opencl_options, OtherLanguageIsRefused) {
    EXPECT_EQ(result_of("compiler_type", "openglessl"), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(result_of("compiler_type", ""), VEXAOC_INVALID_PARAMETERS);
    for (const char* type : {"vertex", "fragment", "compute", "Kernel", ""})
        EXPECT_EQ(result_of("shader_type", type), VEXAOC_INVALID_PARAMETERS) << type;
}

TEST(Opencl_options, UnknownKeyIsRefused) {
    EXPECT_EQ(result_of("optimize", "true"), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(result_of("", ""), VEXAOC_INVALID_PARAMETERS);
}

TEST(Opencl_options, ShaderTypeIsNeeded) {
    Request request(SMALL);
    request.options.clear();
    EXPECT_EQ(compile(request).result, VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(compile(request.with("shader_type", "kernel")).result, VEXAOC_SUCCESS);
}

TEST(Opencl_options, BinaryComesOnlyWhenWanted) {
    Request request(SMALL);
    request.binary_output = 0;
    const Compiled compiled = compile(request);
    EXPECT_TRUE(compiled.binary.empty());
    EXPECT_FALSE(compiled.table.empty());
}

TEST(Opencl_options, ErrorsAreTheSameWithoutBinary) {
    Request request("kernel void k(int n) { int a[n]; a[0] = 1; }");
    const Texts errors = compile(request).errors;
    request.binary_output = 0;
    EXPECT_EQ(compile(request).errors, errors);
}

// What the record builder of the other tests cannot express.
class Opencl_raw_inputs : public testing::Test {
protected:
    int compile_raw() {
        const int result = plugin_.compile(&inputs_, &outputs_);
        plugin_.release_outputs(&outputs_);
        return result;
    }

    const Open_plugin plugin_;
    const char* options_[4] = {"shader_type", "kernel", "kernel_name", "k"};
    vexaoc_inputs inputs_ = {SMALL, 4, options_, "k46x", "r0p0_00rel0", 1};
    vexaoc_outputs outputs_ = {};
};

TEST_F(Opencl_raw_inputs, CompleteOnesCompile) {
    EXPECT_EQ(compile_raw(), VEXAOC_SUCCESS);
}

TEST_F(Opencl_raw_inputs, OddNumberOfOptionsIsRefused) {
    inputs_.num_options = 3;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Opencl_raw_inputs, NullKeyOrValueIsRefused) {
    options_[3] = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    options_[3] = "k";
    options_[2] = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Opencl_raw_inputs, NullOptionsAreRefused) {
    inputs_.options = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    inputs_.num_options = 0;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Opencl_raw_inputs, NullTextsAreRefused) {
    inputs_.source = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    inputs_.source = SMALL;
    inputs_.core_name = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    inputs_.core_name = "k46x";
    inputs_.core_revision = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Opencl_raw_inputs, NullRecordsAreRefused) {
    plugin_.get_api_version(nullptr);
    EXPECT_NE(plugin_.get_capabilities(nullptr), 0);
    EXPECT_NE(plugin_.release_capabilities(nullptr), 0);
    EXPECT_EQ(plugin_.compile(nullptr, &outputs_), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(plugin_.compile(&inputs_, nullptr), VEXAOC_INVALID_PARAMETERS);
    EXPECT_NE(plugin_.release_outputs(nullptr), 0);
}

TEST_F(Opencl_raw_inputs, ReleaseLeavesAnEmptyRecord) {
    ASSERT_EQ(plugin_.compile(&inputs_, &outputs_), VEXAOC_SUCCESS);
    ASSERT_NE(outputs_.binary, nullptr);
    EXPECT_EQ(plugin_.release_outputs(&outputs_), VEXAOC_SUCCESS);
    EXPECT_EQ(outputs_.binary, nullptr);
    EXPECT_EQ(outputs_.string_lists, nullptr);
    EXPECT_EQ(plugin_.release_outputs(&outputs_), VEXAOC_SUCCESS);
}

} // namespace
