// SPDX-License-Identifier: MIT
// Sources that would overflow a stack, run for hours or take all memory.
#include "plugin_under_test.hpp"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::string>;

const Texts TOO_MANY_BYTES = {"ERROR: the source has more than 1048576 bytes"};
const Texts TOO_MANY_TOKENS = {"ERROR: the source has more than 400000 tokens"};
const Texts TOO_MANY_MACROS = {"ERROR: macros expand to more than 500000 tokens"};
const Texts TOO_MANY_MEMBERS = {"ERROR: a structure has more than 4096 members"};

std::string repeat(const std::string& text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

// Bytes of a source, less some for what stands around the repeated text.
std::string fill(const std::string& text, std::size_t bytes) {
    return repeat(text, (bytes - 500) / text.size());
}

constexpr std::size_t MEBIBYTE = std::size_t{1} << 20U;

// Chains may be as long as the tokens allow; about 390,000 here.
constexpr std::size_t MOST_TOKENS = 390'000;

const std::string START = "#version 310 es\nprecision highp float;\nuniform float a;\n"
                          "uniform int i;\nuniform vec4 v;\nlayout(location = 0) out vec4 c;\n";

Texts errors_of(const std::string& source) {
    const Compiled compiled = compile(Request(source, "fragment"));
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    EXPECT_EQ(compiled.errors.empty(), !compiled.binary.empty());
    return compiled.errors;
}

Texts errors_in_main(const std::string& body) {
    return errors_of(START + "void main() { float x = a; bool b = a > 0.0; " + body +
                     " c = vec4(x); }\n");
}

// "#define D0 text", then each macro two of the one before; 2^40 of them in the end.
std::string doubled(const std::string& text) {
    std::string source = "#define D0 " + text + "\n";
    for (int i = 1; i <= 40; ++i) {
        const std::string former = " D" + std::to_string(i - 1);
        source += "#define D" + std::to_string(i) + former + former + "\n";
    }
    return source;
}

class Glsl_mebibyte : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Of, Glsl_mebibyte,
                         testing::Values("(", "-", "a+", "a,", "{", "[", "[0]", "if(b)", "a?",
                                         "x=", "else ", "sin(", "v.xyzw", "struct S{", "\\\n",
                                         "#if 1\n", "D(", "\xff"));

// What the errors say does not matter here; that there is an end does.
TEST_P(Glsl_mebibyte, ComesToAnEnd) {
    const std::string text = fill(GetParam(), MEBIBYTE);
    errors_of(text);
    errors_of(START + text);
    errors_in_main("x = " + text);
    errors_of("#define D(x) x x\n#if " + text + "\n#endif\nvoid main() {}");
    errors_of("#define M " + text + "\n#if M\n#endif\nvoid main() {M}");
    errors_of("#define D(x) " + text + "\nvoid main() { D() D(1) D(D(2)) }");
}

TEST(Glsl_limits, LongestSourceIsAMebibyte) {
    const std::string source = "void main() {}";
    EXPECT_EQ(errors_of(source + std::string(MEBIBYTE - source.size(), ' ')), Texts{});
    EXPECT_EQ(errors_of(source + std::string(MEBIBYTE - source.size() + 1, ' ')), TOO_MANY_BYTES);
}

TEST(Glsl_limits, LongChainsCompile) {
    EXPECT_EQ(errors_in_main("x = x" + repeat("+a", MOST_TOKENS / 2) + ";"), Texts{});
    EXPECT_EQ(errors_in_main("x" + repeat(",a", MOST_TOKENS / 2) + ";"), Texts{});
    EXPECT_EQ(errors_in_main("c = v" + repeat(".xyzw", MOST_TOKENS / 2) + ";"), Texts{});
    EXPECT_EQ(errors_in_main("b = b" + repeat("||b", MOST_TOKENS / 3) + ";"), Texts{});
    EXPECT_EQ(errors_in_main("x = 1.0" + repeat("*1.0", MOST_TOKENS / 4) + ";"), Texts{});
}

TEST(Glsl_limits, LongerChainsAreAnError) {
    EXPECT_EQ(errors_in_main("x = x" + repeat("+a", 200'000) + ";"), TOO_MANY_TOKENS);
    EXPECT_EQ(errors_in_main("x = x" + fill("+a", MEBIBYTE) + ";"), TOO_MANY_TOKENS);
}

TEST(Glsl_limits, DeepNestingIsAnError) {
    const Texts expected = {"ERROR: 0:7: '' :  memory exhausted"};
    EXPECT_EQ(errors_in_main("x = " + repeat("(", 20'000) + "a" + repeat(")", 20'000) + ";"),
              expected);
    EXPECT_EQ(errors_in_main(repeat("{", 20'000) + repeat("}", 20'000)), expected);
    EXPECT_EQ(errors_in_main("x = " + repeat("- ", 20'000) + "a;"), expected);
    EXPECT_EQ(errors_in_main(repeat("if (b) x = a; else ", 20'000) + ";"), expected);
    EXPECT_EQ(errors_in_main("x = " + repeat("b ? a : ", 20'000) + "a;"), expected);
}

TEST(Glsl_limits, ChainsThatMacrosMakeAreLimited) {
    EXPECT_EQ(errors_of(START + doubled("+a") + "void main() { c = vec4(a D16); }"), Texts{});
    EXPECT_EQ(errors_of(START + doubled("+a") + "void main() { c = vec4(a D17); }"),
              TOO_MANY_MACROS);
    EXPECT_EQ(errors_of(START + doubled("+a") + "void main() { c = vec4(a D40); }"),
              TOO_MANY_MACROS);
    EXPECT_EQ(errors_of(START + doubled(";") + "void main() { D40 }"), TOO_MANY_MACROS);
    EXPECT_EQ(errors_of(START + doubled("(") + "void main() { D40 }"), TOO_MANY_MACROS);
}

TEST(Glsl_limits, MacrosInConditionsAreLimited) {
    EXPECT_EQ(errors_of(doubled("+1") + "#if 1 D40\n#endif\nvoid main() {}"), TOO_MANY_MACROS);
    EXPECT_EQ(errors_of(doubled("(") + "#if D40\n#endif\nvoid main() {}"), TOO_MANY_MACROS);
}

TEST(Glsl_limits, MacroArgumentsAreLimited) {
    const std::string nested = repeat("D(", 40) + "a" + repeat(")", 40);
    EXPECT_EQ(errors_of("#define D(x) x x\nvoid main() { " + nested + " }"), TOO_MANY_MACROS);
    EXPECT_EQ(errors_of("#define D(x) x x\n#if " + nested + "\n#endif\nvoid main() {}"),
              TOO_MANY_MACROS);
    EXPECT_EQ(errors_of("#define E(x) " + repeat("x ", 100'000) + "\nvoid main() { E(" +
                        repeat("; ", 100'000) + ") }"),
              TOO_MANY_MACROS);
    EXPECT_EQ(errors_of("#define D(x) x\nvoid main() { " + repeat("D(", 200'000) +
                        repeat(")", 200'000) + " }"),
              TOO_MANY_MACROS);
}

TEST(Glsl_limits, MacrosOfTheOptionsAreLimited) {
    Request request("void main() { D40 }", "fragment");
    request.with("define", "D0=;");
    for (int i = 1; i <= 40; ++i) {
        const std::string former = "D" + std::to_string(i - 1);
        request.with("define", "D" + std::to_string(i) + "=" + former + " " + former);
    }
    EXPECT_EQ(compile(request).errors, TOO_MANY_MACROS);
}

TEST(Glsl_limits, UsualMacrosHaveRoom) {
    EXPECT_EQ(errors_of(START + "#define SQUARE(x) ((x) * (x))\n" + "void main() { float x = a;\n" +
                        repeat("x += SQUARE(SQUARE(a) + SQUARE(x + 1.0));\n", 2000) +
                        "c = vec4(x); }"),
              Texts{});
}

std::string structs(int count, const std::string& second_member) {
    std::string source = START + "struct S0 { float x; };\n";
    for (int i = 1; i <= count; ++i) {
        const std::string former = "S" + std::to_string(i - 1);
        source += "struct S" + std::to_string(i) + " { " + former + " a" + second_member + "; };\n";
    }
    return source + "uniform S" + std::to_string(count) + " s;\nvoid main() { c = vec4(a); }\n";
}

TEST(Glsl_limits, StructuresInStructuresAreLimited) {
    EXPECT_EQ(errors_of(structs(12, ", b")), Texts{});
    EXPECT_EQ(errors_of(structs(13, ", b")), TOO_MANY_MEMBERS);
    EXPECT_EQ(errors_of(structs(60, ", b")), TOO_MANY_MEMBERS);
    EXPECT_EQ(errors_of(structs(60, "; float x; S0 b, d")), Texts{});
}

TEST(Glsl_limits, DeepStructuresCompile) {
    EXPECT_EQ(errors_of(structs(30'000, "")), Texts{});
}

TEST(Glsl_limits, LargeInterfaceArraysAreAnError) {
    const Texts expected = {"ERROR: 's' : array of more than 65536 elements"};
    const std::string body = "; void main() { c = vec4(a); }";
    EXPECT_EQ(errors_of(START + "uniform vec4 s[2000000000]" + body), expected);
    EXPECT_EQ(errors_of(START + "uniform vec4 s[65535][65535][65535][65535][65535]" + body),
              expected);
    EXPECT_EQ(errors_of(START + "uniform vec4 s[65537]" + body), expected);
    EXPECT_EQ(errors_of(START + "uniform vec4 s[65536]" + body), Texts{});
}

TEST(Glsl_limits, LargeOtherArraysCompile) {
    EXPECT_EQ(errors_of(START + "float s[2000000000];\nvoid main() { c = vec4(s[i]); }"), Texts{});
}

} // namespace
