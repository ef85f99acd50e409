// SPDX-License-Identifier: MIT
// Sources that would overflow a stack, run for hours or take all memory.
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

const std::string TOO_MANY_MACROS = "fatal error: macros expand to too many tokens";
const std::string TOO_MANY_TOKENS = "fatal error: the source has too many tokens";
const std::string TOO_LONG = "fatal error: the statement is too long";
const std::string TOO_DEEP = "error: the source is nested too deeply";

std::string kernel_of(const std::string& body) {
    return "kernel void k(global int* p, int n) { " + body + " }\n";
}

// Only the text of each error: where it is does not matter here.
Texts reasons(const std::string& source) {
    Texts errors = errors_of(source);
    for (std::string& error : errors)
        error.erase(0, error.find(": ") + 2);
    return errors;
}

TEST(Limits, TokensAreLimited) {
    EXPECT_EQ(errors_of(kernel_of(repeat("n;", 190'000))), Texts{});
    EXPECT_EQ(reasons(kernel_of(repeat("n;", 210'000))), Texts{TOO_MANY_TOKENS});
}

TEST(Limits, DeepNestingIsAnError) {
    EXPECT_EQ(errors_of(kernel_of("p[0] = n" + repeat("+n", 9'000) + ";")), Texts{});
    EXPECT_EQ(reasons(kernel_of("n" + repeat(", n", 50'000) + ";")), Texts{TOO_DEEP});
    EXPECT_EQ(reasons(kernel_of("p[0] = n" + repeat("+n", 50'000) + ";")), Texts{TOO_LONG});
    EXPECT_EQ(reasons(kernel_of("p[0] = " + repeat("- ", 50'000) + "n;")), Texts{TOO_LONG});
    EXPECT_EQ(reasons(kernel_of(repeat("if (n) ", 50'000) + ";")), Texts{TOO_LONG});
    EXPECT_EQ(reasons(kernel_of(repeat("do ", 50'000) + ";")), Texts{TOO_LONG});
    EXPECT_EQ(reasons(kernel_of(repeat("if (n) n; else ", 50'000) + ";")), Texts{TOO_LONG});
    EXPECT_EQ(errors_of(kernel_of(repeat("if (n) n; else ", 1'000) + ";")), Texts{});
}

TEST(Limits, BracketsAreLimited) {
    EXPECT_EQ(errors_of(kernel_of("n = " + repeat("(", 5'000) + "n" + repeat(")", 5'000) + ";")),
              Texts{"1:299: fatal error: bracket nesting level exceeded maximum of 256\n"
                    "1:299: note: use -fbracket-depth=N to increase maximum nesting level"});
}

TEST(Limits, MacrosAreLimited) {
    EXPECT_EQ(errors_of(doubled("n;") + kernel_of("D12")), Texts{});
    EXPECT_EQ(reasons(doubled("n;") + kernel_of("D40")), Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons(doubled("(") + kernel_of("D40")), Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons(doubled("+1") + "#if 1 D40\n#endif\n"), Texts{TOO_MANY_MACROS});
}

TEST(Limits, MacroArgumentsAreLimited) {
    const std::string nested = repeat("D(", 40) + "n;" + repeat(")", 40);
    const std::string define = "#define D(x) x x\n";
    EXPECT_EQ(reasons(define + kernel_of(nested)), Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons(define + "#if " + nested + "\n#endif\n"), Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons(define + "#define f D\n" + kernel_of("f (" + nested + ")")),
              Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons(define + "#define A(f, x) f(x)\n" +
                      kernel_of(repeat("D(A(D, ", 20) + "n;" + repeat("))", 20))),
              Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons(define + "#define D2(...) __VA_ARGS__ __VA_ARGS__\n" +
                      kernel_of(repeat("D2(", 40) + "n;" + repeat(")", 40))),
              Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons("#define E(x) " + repeat("x ", 100'000) + "\n" +
                      kernel_of("E(" + repeat("; ", 100'000) + ")")),
              Texts{TOO_MANY_MACROS});
}

TEST(Limits, PastedMacrosAreLimited) {
    std::string source = "#define D(x) x x\n";
    for (int i = 0; i < 20; ++i) {
        const std::string own = std::to_string(i);
        const std::string next = std::to_string(i + 1);
        source += "#define C" + own + "(a, b) a##b\n#define N" + own + " D(D(D(C" + own + "(N, " +
                  next + "))))\n";
    }
    EXPECT_EQ(reasons(source + "#define N20 n;\n" + kernel_of("N0")), Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons(doubled("n;") + "#define E(x) x##D40\n" + kernel_of("n; E()")),
              Texts{TOO_MANY_MACROS});
}

TEST(Limits, LongTextsInMacrosAreLimited) {
    EXPECT_EQ(reasons("#define S(x) " + repeat("#x ", 50'000) + "\n" +
                      kernel_of("S(" + repeat("a ", 200'000) + ");")),
              Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons("#define A \"" + repeat("a", 300'000) + "\"\n" +
                      kernel_of("constant char* s = " + repeat("A ", 60'000) + ";")),
              Texts{TOO_MANY_MACROS});
}

TEST(Limits, UsualMacrosHaveRoom) {
    EXPECT_EQ(errors_of("#define SQUARE(x) ((x) * (x))\n" +
                        kernel_of(repeat("n += SQUARE(SQUARE(n) + SQUARE(n + 1));\n", 2000))),
              Texts{});
}

TEST(Limits, NamesAreLimited) {
    EXPECT_EQ(errors_of(kernel_of("int " + repeat("a", 1000) + ";")), Texts{});
    EXPECT_EQ(reasons(kernel_of("int " + repeat("a", 1001) + ";")),
              Texts{"fatal error: a name is too long"});
}

TEST(Limits, VariablesAreLimited) {
    const std::string reason = "error: the variables take more than 64 MiB";
    EXPECT_EQ(reasons("constant char s[1ul << 40] = \"abc\";\n" + kernel_of("")), Texts{reason});
    EXPECT_EQ(reasons(kernel_of("char s[1ul << 33] = \"abc\"; p[0] = s[n];")), Texts{reason});
    EXPECT_EQ(reasons(kernel_of("p[0] = ((char[1ul << 33]){\"abc\"})[n];")), Texts{reason});
    EXPECT_EQ(reasons("struct s { char a[1ul << 33]; };\n" + kernel_of("struct s x = {\"abc\"};")),
              Texts{reason});
    EXPECT_EQ(errors_of(kernel_of("char s[1 << 20]; s[n] = 1; p[0] = s[1];")), Texts{});
    EXPECT_EQ(errors_of("constant char a[~0ul] = {1};\n" + kernel_of("")).size(), 1U);
}

TEST(Limits, DesignatedElementsAreLimited) {
    const std::string reason =
        "fatal error: an index in an initial value must be a plain small number";
    for (const char* designator : {"[1 << 30]", "[1073741824]", "[0 ... 1073741824]", "[n]",
                                   "[huge]", "[1][1073741824]", "[0x40000000]", "[(2)]"})
        EXPECT_EQ(reasons("enum { huge = 1 << 30 };\nconstant int a[][1] = {" +
                          std::string(designator) + " = 1};\n"),
                  Texts{reason})
            << designator;
    EXPECT_EQ(errors_of("enum { red, green };\nstruct s { int x[3]; };\n"
                        "constant int a[] = {[green] = 1, [7u] = 2, [9 ... 12] = 3, ['a'] = 4};\n"
                        "constant struct s b[] = {[2].x[1] = 3, [1] = {.x = {[2] = 1}}};\n" +
                        kernel_of("int c[] = {[3] = n, n}; p[a[n]] = c[p[0]];")),
              Texts{});
}

TEST(Limits, ListsThatSpirvCannotHoldAreErrors) {
    const Texts expected = {"error: in 'a': more than 65000 initial values cannot be translated to "
                            "SPIR-V"};
    EXPECT_EQ(errors_of("constant int a[] = {" + repeat("1,", 66'000) + "};\n" +
                        kernel_of("p[0] = a[n];")),
              expected);
    EXPECT_EQ(errors_of("constant int a[] = {" + repeat("1,", 64'000) + "};\n" +
                        kernel_of("p[0] = a[n];")),
              Texts{});
}

std::string structs(int levels) {
    std::string source = "struct s1 { int a; };\n";
    for (int i = 2; i <= levels; ++i)
        source +=
            "struct s" + std::to_string(i) + " { struct s" + std::to_string(i - 1) + " a; };\n";
    return source + kernel_of("struct s" + std::to_string(levels) + " s; p[0] = sizeof(s);");
}

TEST(Limits, LevelsOfTypesAreLimited) {
    const Texts expected = {
        "error: in 'k': a type of more than 100 levels cannot be translated to SPIR-V"};
    // The variable's address is a level of its own.
    EXPECT_EQ(errors_of(structs(98)), Texts{});
    EXPECT_EQ(errors_of(structs(99)), expected);
    EXPECT_EQ(errors_of(structs(1'000)), expected);
}

std::string kernels(int count) {
    std::string source;
    for (int i = 0; i < count; ++i)
        source += "kernel void k" + std::to_string(i) + "() {}\n";
    return source;
}

TEST(Limits, FunctionsAreLimited) {
    EXPECT_EQ(errors_of(kernels(2000)), Texts{});
    EXPECT_EQ(errors_of(kernels(2001)), Texts{"error: there are more than 2000 functions"});
}

} // namespace
