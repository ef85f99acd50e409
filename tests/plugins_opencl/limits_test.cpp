// SPDX-License-Identifier: MIT
// Sources that would overflow a stack, run for hours or take all memory.
#include "opencl_test.hpp"

#include <gtest/gtest.h>

namespace {

constexpr std::size_t MEBIBYTE = std::size_t{1} << 20U;

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

// "#define D0 text", then each macro two of the one before; 2^40 of them in the end.
std::string doubled(const std::string& text) {
    std::string source = "#define D0 " + text + "\n";
    for (int i = 1; i <= 40; ++i) {
        const std::string former = " D" + std::to_string(i - 1);
        source += "#define D" + std::to_string(i) + former + former + "\n";
    }
    return source;
}

TEST(Opencl_limits, LongestSourceIsAMebibyte) {
    const std::string source = "kernel void k() {}";
    EXPECT_EQ(errors_of(source + std::string(MEBIBYTE - source.size(), ' ')), Texts{});
    EXPECT_EQ(errors_of(source + std::string(MEBIBYTE - source.size() + 1, ' ')),
              Texts{"error: the source has more than 1048576 bytes"});
}

TEST(Opencl_limits, TokensAreLimited) {
    EXPECT_EQ(errors_of(kernel_of(repeat("n;", 190'000))), Texts{});
    EXPECT_EQ(reasons(kernel_of(repeat("n;", 210'000))), Texts{TOO_MANY_TOKENS});
}

class Opencl_mebibyte : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Of, Opencl_mebibyte,
                         testing::Values("(", "-", "n+", "{", "[", "[0]", "if(n)", "n?", "n=",
                                         "else ", "sin(", "struct s{", "\\\n", "#if 1\n", "D(",
                                         "\xff", "do ", "(int)", "sizeof ", "&*", "n?n,n:", "\"a\"",
                                         "if(n,n)", "for(n,n;n;)", "__extension__ ",
                                         "l:", "case 1:", "'a'", "typedef ", "#define A A\n"));

// What the errors say does not matter here; that there is an end does.
TEST_P(Opencl_mebibyte, ComesToAnEnd) {
    const std::string text = repeat(GetParam(), (MEBIBYTE - 500) / std::string(GetParam()).size());
    errors_of(text);
    errors_of(kernel_of("p[0] = " + text));
    errors_of("#define D(x) x x\n#if " + text + "\n#endif\nkernel void k() {}");
    errors_of("#define D(x) " + text + "\nkernel void k() { D() D(1) D(D(2)) }");
}

TEST(Opencl_limits, DeepNestingIsAnError) {
    EXPECT_EQ(errors_of(kernel_of("p[0] = n" + repeat("+n", 9'000) + ";")), Texts{});
    EXPECT_EQ(reasons(kernel_of("n" + repeat(", n", 50'000) + ";")), Texts{TOO_DEEP});
    EXPECT_EQ(reasons(kernel_of("p[0] = n" + repeat("+n", 50'000) + ";")), Texts{TOO_LONG});
    EXPECT_EQ(reasons(kernel_of("p[0] = " + repeat("- ", 50'000) + "n;")), Texts{TOO_LONG});
    EXPECT_EQ(reasons(kernel_of(repeat("if (n) ", 50'000) + ";")), Texts{TOO_LONG});
    EXPECT_EQ(reasons(kernel_of(repeat("do ", 50'000) + ";")), Texts{TOO_LONG});
    EXPECT_EQ(reasons(kernel_of(repeat("if (n) n; else ", 50'000) + ";")), Texts{TOO_LONG});
    EXPECT_EQ(errors_of(kernel_of(repeat("if (n) n; else ", 1'000) + ";")), Texts{});
}

TEST(Opencl_limits, BracketsAreLimited) {
    EXPECT_EQ(errors_of(kernel_of("n = " + repeat("(", 5'000) + "n" + repeat(")", 5'000) + ";")),
              Texts{"1:299: fatal error: bracket nesting level exceeded maximum of 256\n"
                    "1:299: note: use -fbracket-depth=N to increase maximum nesting level"});
}

TEST(Opencl_limits, MacrosAreLimited) {
    EXPECT_EQ(errors_of(doubled("n;") + kernel_of("D12")), Texts{});
    EXPECT_EQ(reasons(doubled("n;") + kernel_of("D40")), Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons(doubled("(") + kernel_of("D40")), Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons(doubled("+1") + "#if 1 D40\n#endif\n"), Texts{TOO_MANY_MACROS});
}

TEST(Opencl_limits, MacroArgumentsAreLimited) {
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

TEST(Opencl_limits, PastedMacrosAreLimited) {
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

TEST(Opencl_limits, LongTextsInMacrosAreLimited) {
    EXPECT_EQ(reasons("#define S(x) " + repeat("#x ", 50'000) + "\n" +
                      kernel_of("S(" + repeat("a ", 200'000) + ");")),
              Texts{TOO_MANY_MACROS});
    EXPECT_EQ(reasons("#define A \"" + repeat("a", 300'000) + "\"\n" +
                      kernel_of("constant char* s = " + repeat("A ", 60'000) + ";")),
              Texts{TOO_MANY_MACROS});
}

TEST(Opencl_limits, MacrosOfTheOptionsAreLimited) {
    Request request(kernel_of("D40"));
    request.with("define", "D0=;");
    for (int i = 1; i <= 40; ++i) {
        const std::string former = "D" + std::to_string(i - 1);
        request.with("define", "D" + std::to_string(i) + "=" + former + " " + former);
    }
    const Texts errors = compile(request).errors;
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_EQ(errors[0], "1:39: " + TOO_MANY_MACROS);
}

TEST(Opencl_limits, UsualMacrosHaveRoom) {
    EXPECT_EQ(errors_of("#define SQUARE(x) ((x) * (x))\n" +
                        kernel_of(repeat("n += SQUARE(SQUARE(n) + SQUARE(n + 1));\n", 2000))),
              Texts{});
}

TEST(Opencl_limits, NamesAreLimited) {
    EXPECT_EQ(errors_of(kernel_of("int " + repeat("a", 1000) + ";")), Texts{});
    EXPECT_EQ(reasons(kernel_of("int " + repeat("a", 1001) + ";")),
              Texts{"fatal error: a name is too long"});
}

TEST(Opencl_limits, VariablesAreLimited) {
    const std::string reason = "error: the variables take more than 64 MiB";
    EXPECT_EQ(reasons("constant char s[1ul << 40] = \"abc\";\n" + kernel_of("")), Texts{reason});
    EXPECT_EQ(reasons(kernel_of("char s[1ul << 33] = \"abc\"; p[0] = s[n];")), Texts{reason});
    EXPECT_EQ(reasons(kernel_of("p[0] = ((char[1ul << 33]){\"abc\"})[n];")), Texts{reason});
    EXPECT_EQ(reasons("struct s { char a[1ul << 33]; };\n" + kernel_of("struct s x = {\"abc\"};")),
              Texts{reason});
    EXPECT_EQ(errors_of(kernel_of("char s[1 << 20]; s[n] = 1; p[0] = s[1];")), Texts{});
    EXPECT_EQ(errors_of("constant char a[~0ul] = {1};\n" + kernel_of("")).size(), 1U);
}

TEST(Opencl_limits, DesignatedElementsAreLimited) {
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

TEST(Opencl_limits, ListsThatSpirvCannotHoldAreErrors) {
    const Texts expected = {"error: in 'a': more than 65000 initial values cannot be translated to "
                            "SPIR-V"};
    EXPECT_EQ(errors_of("constant int a[] = {" + repeat("1,", 66'000) + "};\n" +
                        kernel_of("p[0] = a[n];")),
              expected);
    EXPECT_EQ(errors_of("constant int a[] = {" + repeat("1,", 64'000) + "};\n" +
                        kernel_of("p[0] = a[n];")),
              Texts{});
}

} // namespace
