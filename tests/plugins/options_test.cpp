// SPDX-License-Identifier: MIT
#include "plugin_under_test.hpp"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::string>;

const char* const USES_VALUE = "void main() { VALUE; }";

int result_of(const std::string& key, const std::string& value) {
    return compile(Request("void main() {}", "vertex").with(key, value)).result;
}

Compiled compile_defined(const std::string& source, const std::string& define) {
    return compile(Request(source, "vertex").with("define", define));
}

TEST(Glsl_options, DefineWithValueReplacesName) {
    EXPECT_EQ(compile_defined(USES_VALUE, "VALUE=7").errors, Texts{});
    EXPECT_EQ(compile_defined(USES_VALUE, "VALUE=(1 + 2 == 3 ? 1 : 2)").errors, Texts{});
}

TEST(Glsl_options, DefineWithoutValueIsOne) {
    EXPECT_EQ(compile_defined("#if VALUE != 1\n#error no\n#endif\nvoid main() {}", "VALUE").errors,
              Texts{});
}

TEST(Glsl_options, DefineWithEmptyValueIsEmpty) {
    EXPECT_EQ(compile_defined("void main() { VALUE }", "VALUE=").errors, Texts{});
}

TEST(Glsl_options, SeveralDefinesHold) {
    const Request request = Request("void main() { int i = A + B; }", "vertex")
                                .with("define", "A=1")
                                .with("define", "B=A");
    EXPECT_EQ(compile(request).errors, Texts{});
}

TEST(Glsl_options, DefinesLeaveVersionAndLinesAlone) {
    const Compiled compiled = compile_defined("#version 310 es\nvoid main() { x; }", "VALUE=7");
    EXPECT_EQ(compiled.errors, Texts{"ERROR: 0:2: 'x' : undeclared identifier"});
}

TEST(Glsl_options, DefinesOfAnEarlierCompileAreGone) {
    const Open_plugin plugin(GLSL_PLUGIN_FILE);
    ASSERT_EQ(compile(plugin, Request(USES_VALUE, "vertex").with("define", "VALUE=7")).errors,
              Texts{});
    EXPECT_EQ(compile(plugin, Request(USES_VALUE, "vertex")).errors,
              Texts{"ERROR: 0:1: 'VALUE' : undeclared identifier"});
}

TEST(Glsl_options, DefineOfTheLanguagesOwnMacroIsAnError) {
    EXPECT_EQ(compile_defined("void main() {}", "GL_ES=2").errors,
              Texts{"ERROR: -1:1: '#define' : Macro redefined; different substitutions: GL_ES"});
}

TEST(Glsl_options, DefineThatIsNoneIsRefused) {
    for (const char* define :
         {"", "=", "=1", "7", "7A=1", "A B", "A B=1", " A", "A-B=1", "A(x)=x", "\xc3\xa4=1",
          "A=1\n#error injected", "A=1\r#error injected", "A\n", "A=\\", "A=/*", "A=1/*2*/"})
        EXPECT_EQ(result_of("define", define), VEXAOC_INVALID_PARAMETERS) << define;
}

TEST(Glsl_options, LineCommentInDefineEndsWithIt) {
    EXPECT_EQ(compile_defined(USES_VALUE, "VALUE=7 // seven").errors, Texts{});
}

TEST(Glsl_options, PrerotateIsTrueOrFalse) {
    EXPECT_EQ(result_of("prerotate", "true"), VEXAOC_SUCCESS);
    EXPECT_EQ(result_of("prerotate", "false"), VEXAOC_SUCCESS);
    EXPECT_EQ(result_of("prerotate", "maybe"), VEXAOC_INVALID_PARAMETERS);
}

TEST(Glsl_options, KernelNameIsIgnored) {
    EXPECT_EQ(result_of("kernel_name", "blur"), VEXAOC_SUCCESS);
}

TEST(Glsl_options, OtherLanguageIsRefused) {
    EXPECT_EQ(result_of("compiler_type", "opencl"), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(result_of("compiler_type", ""), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(result_of("shader_type", "kernel"), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(result_of("shader_type", "Vertex"), VEXAOC_INVALID_PARAMETERS);
}

TEST(Glsl_options, UnknownKeyIsRefused) {
    EXPECT_EQ(result_of("optimize", "true"), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(result_of("", ""), VEXAOC_INVALID_PARAMETERS);
}

TEST(Glsl_options, ShaderTypeIsNeeded) {
    Request request("void main() {}", "vertex");
    request.options.clear();
    EXPECT_EQ(compile(request).result, VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(compile(request.with("shader_type", "vertex")).result, VEXAOC_SUCCESS);
}

TEST(Glsl_options, BinaryComesOnlyWhenWanted) {
    Request request("void main() {}", "vertex");
    request.binary_output = 0;
    EXPECT_EQ(compile(request).binary.size(), 0U);
    EXPECT_FALSE(compile(request).table.empty());
}

// What the record builder of the other tests cannot express.
class Glsl_raw_inputs : public testing::Test {
protected:
    int compile_raw() {
        const int result = plugin_.compile(&inputs_, &outputs_);
        plugin_.release_outputs(&outputs_);
        return result;
    }

    const Open_plugin plugin_{GLSL_PLUGIN_FILE};
    const char* options_[4] = {"shader_type", "vertex", "kernel_name", "x"};
    vexaoc_inputs inputs_ = {"void main() {}", 4, options_, "k46x", "r0p0_00rel0", 1};
    vexaoc_outputs outputs_ = {};
};

TEST_F(Glsl_raw_inputs, CompleteOnesCompile) {
    EXPECT_EQ(compile_raw(), VEXAOC_SUCCESS);
}

TEST_F(Glsl_raw_inputs, OddNumberOfOptionsIsRefused) {
    inputs_.num_options = 3;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Glsl_raw_inputs, NullKeyOrValueIsRefused) {
    options_[3] = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    options_[3] = "x";
    options_[2] = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Glsl_raw_inputs, NullOptionsAreRefused) {
    inputs_.options = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    inputs_.num_options = 0;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Glsl_raw_inputs, NullTextsAreRefused) {
    inputs_.source = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    inputs_.source = "void main() {}";
    inputs_.core_name = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    inputs_.core_name = "k46x";
    inputs_.core_revision = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Glsl_raw_inputs, NullRecordsAreRefused) {
    plugin_.get_api_version(nullptr);
    EXPECT_NE(plugin_.get_capabilities(nullptr), 0);
    EXPECT_NE(plugin_.release_capabilities(nullptr), 0);
    EXPECT_EQ(plugin_.compile(nullptr, &outputs_), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(plugin_.compile(&inputs_, nullptr), VEXAOC_INVALID_PARAMETERS);
    EXPECT_NE(plugin_.release_outputs(nullptr), 0);
}

TEST_F(Glsl_raw_inputs, ReleaseLeavesAnEmptyRecord) {
    ASSERT_EQ(plugin_.compile(&inputs_, &outputs_), VEXAOC_SUCCESS);
    ASSERT_NE(outputs_.binary, nullptr);
    EXPECT_EQ(plugin_.release_outputs(&outputs_), VEXAOC_SUCCESS);
    EXPECT_EQ(outputs_.binary, nullptr);
    EXPECT_EQ(outputs_.string_lists, nullptr);
    EXPECT_EQ(plugin_.release_outputs(&outputs_), VEXAOC_SUCCESS);
}

} // namespace
