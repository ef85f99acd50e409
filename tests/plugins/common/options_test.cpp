// SPDX-License-Identifier: MIT
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

int result_of(const std::string& key, const std::string& value) {
    return compile(Request(with_body("")).with(key, value)).result;
}

Texts errors_defining(const std::string& define, const std::string& source) {
    return compile(Request(source).with("define", define)).errors;
}

TEST(Options, DefineWithValueReplacesName) {
    EXPECT_EQ(errors_defining("VALUE=7", with_body("VALUE;")), Texts{});
    EXPECT_EQ(errors_defining("VALUE=(1 + 2 == 3 ? 1 : 2)", with_body("VALUE;")), Texts{});
}

TEST(Options, DefineWithoutValueIsOne) {
    EXPECT_EQ(errors_defining("VALUE", "#if VALUE != 1\n#error no\n#endif\n" + with_body("")),
              Texts{});
}

TEST(Options, DefineWithEmptyValueIsEmpty) {
    EXPECT_EQ(errors_defining("VALUE=", with_body("VALUE")), Texts{});
}

TEST(Options, SeveralDefinesHold) {
    EXPECT_EQ(
        compile(Request(with_body("int i = A + B;")).with("define", "A=1").with("define", "B=A"))
            .errors,
        Texts{});
}

TEST(Options, DefinesLeaveLinesAlone) {
    EXPECT_EQ(errors_defining("VALUE=7", "\n" + with_body("x;")),
              Texts{SUBJECT.undeclared("x", 2)});
}

TEST(Options, DefinesOfAnEarlierCompileAreGone) {
    const Open_plugin plugin;
    const std::string source = with_body("VALUE;");
    ASSERT_EQ(compile(plugin, Request(source).with("define", "VALUE=7")).errors, Texts{});
    EXPECT_EQ(compile(plugin, Request(source)).errors, Texts{SUBJECT.undeclared("VALUE", 1)});
}

TEST(Options, DefineThatIsNoneIsRefused) {
    for (const char* define : {"", "=", "=1", "7", "7A=1", "A B", "A B=1", " A", "A-B=1", "A(x)=x",
                               "\xc3\xa4=1", "A=1\n#error injected", "A=1\r#error injected", "A\n",
                               "A=\\", "A=/*", "A=1/*2*/", "-I/etc", "-include /etc/passwd"})
        EXPECT_EQ(result_of("define", define), VEXAOC_INVALID_PARAMETERS) << define;
}

TEST(Options, LineCommentInDefineEndsWithIt) {
    EXPECT_EQ(errors_defining("VALUE=7 // seven", with_body("VALUE;")), Texts{});
}

TEST(Options, MacrosThatTheyMakeAreLimited) {
    Request request(with_body("D40"));
    request.with("define", "D0=;");
    for (int i = 1; i <= 40; ++i) {
        const std::string former = "D" + std::to_string(i - 1);
        request.with("define", "D" + std::to_string(i) + "=" + former + " " + former);
    }
    EXPECT_EQ(compile(request).errors, Texts{SUBJECT.too_many_macros});
}

TEST(Options, PrerotateIsTrueOrFalse) {
    EXPECT_EQ(result_of("prerotate", "true"), VEXAOC_SUCCESS);
    EXPECT_EQ(result_of("prerotate", "false"), VEXAOC_SUCCESS);
    EXPECT_EQ(result_of("prerotate", "maybe"), VEXAOC_INVALID_PARAMETERS);
}

TEST(Options, OtherLanguageIsRefused) {
    EXPECT_EQ(result_of("compiler_type", SUBJECT.other_api), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(result_of("compiler_type", ""), VEXAOC_INVALID_PARAMETERS);
    for (const std::string& type : SUBJECT.other_shader_types)
        EXPECT_EQ(result_of("shader_type", type), VEXAOC_INVALID_PARAMETERS) << type;
}

TEST(Options, UnknownKeyIsRefused) {
    EXPECT_EQ(result_of("optimize", "true"), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(result_of("", ""), VEXAOC_INVALID_PARAMETERS);
}

TEST(Options, ShaderTypeIsNeeded) {
    Request request(with_body(""));
    request.options.clear();
    EXPECT_EQ(compile(request).result, VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(compile(request.with("shader_type", SUBJECT.shader_type)).result, VEXAOC_SUCCESS);
}

TEST(Options, BinaryComesOnlyWhenWanted) {
    Request request(with_body(""));
    request.binary_output = 0;
    const Compiled compiled = compile(request);
    EXPECT_TRUE(compiled.binary.empty());
    EXPECT_FALSE(compiled.table.empty());
}

} // namespace
