// SPDX-License-Identifier: MIT
// Sources that would overflow a stack, run for hours or take all memory.
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

const Texts TOO_MANY_TOKENS = {"ERROR: the source has more than 400000 tokens"};
const Texts TOO_MANY_MACROS = {"ERROR: macros expand to more than 500000 tokens"};
const Texts TOO_MANY_MEMBERS = {"ERROR: a structure has more than 4096 members"};

// Chains may be as long as the tokens allow; about 390,000 here.
constexpr std::size_t MOST_TOKENS = 390'000;

const std::string START = "#version 310 es\nprecision highp float;\nuniform float a;\n"
                          "uniform int i;\nuniform vec4 v;\nlayout(location = 0) out vec4 c;\n";

Texts errors_in_main(const std::string& body) {
    return errors_of(START + "void main() { float x = a; bool b = a > 0.0; " + body +
                     " c = vec4(x); }\n");
}

TEST(Limits, LongChainsCompile) {
    EXPECT_EQ(errors_in_main("x = x" + repeat("+a", MOST_TOKENS / 2) + ";"), Texts{});
    EXPECT_EQ(errors_in_main("x" + repeat(",a", MOST_TOKENS / 2) + ";"), Texts{});
    EXPECT_EQ(errors_in_main("c = v" + repeat(".xyzw", MOST_TOKENS / 2) + ";"), Texts{});
    EXPECT_EQ(errors_in_main("b = b" + repeat("||b", MOST_TOKENS / 3) + ";"), Texts{});
    EXPECT_EQ(errors_in_main("x = 1.0" + repeat("*1.0", MOST_TOKENS / 4) + ";"), Texts{});
}

TEST(Limits, LongerChainsAreAnError) {
    EXPECT_EQ(errors_in_main("x = x" + repeat("+a", 200'000) + ";"), TOO_MANY_TOKENS);
    EXPECT_EQ(errors_in_main("x = x" + repeat("+a", (MEBIBYTE - 500) / 2) + ";"), TOO_MANY_TOKENS);
}

TEST(Limits, DeepNestingIsAnError) {
    const Texts expected = {"ERROR: 0:7: '' :  memory exhausted"};
    EXPECT_EQ(errors_in_main("x = " + repeat("(", 20'000) + "a" + repeat(")", 20'000) + ";"),
              expected);
    EXPECT_EQ(errors_in_main(repeat("{", 20'000) + repeat("}", 20'000)), expected);
    EXPECT_EQ(errors_in_main("x = " + repeat("- ", 20'000) + "a;"), expected);
    EXPECT_EQ(errors_in_main(repeat("if (b) x = a; else ", 20'000) + ";"), expected);
    EXPECT_EQ(errors_in_main("x = " + repeat("b ? a : ", 20'000) + "a;"), expected);
}

TEST(Limits, ChainsThatMacrosMakeAreLimited) {
    EXPECT_EQ(errors_of(START + doubled("+a") + "void main() { c = vec4(a D16); }"), Texts{});
    EXPECT_EQ(errors_of(START + doubled("+a") + "void main() { c = vec4(a D17); }"),
              TOO_MANY_MACROS);
    EXPECT_EQ(errors_of(START + doubled("+a") + "void main() { c = vec4(a D40); }"),
              TOO_MANY_MACROS);
    EXPECT_EQ(errors_of(START + doubled(";") + "void main() { D40 }"), TOO_MANY_MACROS);
    EXPECT_EQ(errors_of(START + doubled("(") + "void main() { D40 }"), TOO_MANY_MACROS);
}

TEST(Limits, MacrosInConditionsAreLimited) {
    EXPECT_EQ(errors_of(doubled("+1") + "#if 1 D40\n#endif\nvoid main() {}"), TOO_MANY_MACROS);
    EXPECT_EQ(errors_of(doubled("(") + "#if D40\n#endif\nvoid main() {}"), TOO_MANY_MACROS);
}

TEST(Limits, MacroArgumentsAreLimited) {
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

TEST(Limits, UsualMacrosHaveRoom) {
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

TEST(Limits, StructuresInStructuresAreLimited) {
    EXPECT_EQ(errors_of(structs(12, ", b")), Texts{});
    EXPECT_EQ(errors_of(structs(13, ", b")), TOO_MANY_MEMBERS);
    EXPECT_EQ(errors_of(structs(60, ", b")), TOO_MANY_MEMBERS);
    EXPECT_EQ(errors_of(structs(60, "; float x; S0 b, d")), Texts{});
}

TEST(Limits, DeepStructuresCompile) {
    EXPECT_EQ(errors_of(structs(30'000, "")), Texts{});
}

TEST(Limits, LargeInterfaceArraysAreAnError) {
    const Texts expected = {"ERROR: 's' : array of more than 65536 elements"};
    const std::string body = "; void main() { c = vec4(a); }";
    EXPECT_EQ(errors_of(START + "uniform vec4 s[2000000000]" + body), expected);
    EXPECT_EQ(errors_of(START + "uniform vec4 s[65535][65535][65535][65535][65535]" + body),
              expected);
    EXPECT_EQ(errors_of(START + "uniform vec4 s[65537]" + body), expected);
    EXPECT_EQ(errors_of(START + "uniform vec4 s[65536]" + body), Texts{});
}

TEST(Limits, LargeOtherArraysCompile) {
    EXPECT_EQ(errors_of(START + "float s[2000000000];\nvoid main() { c = vec4(s[i]); }"), Texts{});
}

// Each function calls the one before it.
std::string calls(int count) {
    std::string source = START + "void f0() {}\n";
    for (int i = 1; i < count; ++i)
        source += "void f" + std::to_string(i) + "() { f" + std::to_string(i - 1) + "(); f" +
                  std::to_string(i - 1) + "(); }\n";
    return source + "void main() { c = vec4(a); f" + std::to_string(count - 1) + "(); }\n";
}

TEST(Limits, CallsOfFunctionsAreLimited) {
    EXPECT_EQ(errors_of(calls(2000)), Texts{});
    EXPECT_EQ(errors_of(calls(2001)),
              Texts{"ERROR: functions call each other in more than 2000 ways"});
}

} // namespace
