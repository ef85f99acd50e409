// SPDX-License-Identifier: MIT
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

const Texts HEADINGS = {"kernel",     "arguments", "local bytes", "private bytes",
                        "arithmetic", "memory",    "control",     "calls"};

TEST(Statistics, EachKernelHasARow) {
    const Table expected = {
        HEADINGS,
        {"empty", "0", "0", "0", "0", "0", "1", "0"},
        // Memory: two arguments stored, both loaded again, an element loaded and stored.
        {"add", "2", "0", "16", "1", "6", "1", "0"},
    };
    EXPECT_EQ(compile(Request("void unused() {} kernel void empty() {}\n"
                              "kernel void add(global long* p, long i) { p[0] += i; }"))
                  .table,
              expected);
}

TEST(Statistics, LocalMemoryIsThatOfTheKernel) {
    const Table table = compile(Request("kernel void a() { local int x[10]; x[0] = 1; }\n"
                                        "kernel void b() { local long x[3], y; x[0] = y; }\n"
                                        "kernel void c(local int* x) { x[0] = 1; }"))
                            .table;
    ASSERT_EQ(table.size(), 4U);
    EXPECT_EQ(table[1][2], "40");
    EXPECT_EQ(table[2][2], "32");
    EXPECT_EQ(table[3][2], "0");
}

TEST(Statistics, CalledFunctionsCountOnce) {
    const Table table = compile(Request("int g(int x) { int a[100]; return x * a[x]; }\n"
                                        "int f(int x) { return g(x) * g(x); }\n"
                                        "kernel void k(int n) { f(n); f(n); g(n); }"))
                            .table;
    ASSERT_EQ(table.size(), 2U);
    EXPECT_EQ(table[1][3], "412"); // n, x, x and a
    EXPECT_EQ(table[1][4], "2");   // the multiplications
    EXPECT_EQ(table[1][7], "5");
}

TEST(Statistics, BranchesAndBuiltInsCount) {
    const Table table = compile(Request("kernel void k(global float* p) {\n"
                                        "if (get_global_id(0) == 0) barrier(1);\n"
                                        "p[0] = sin(p[1]); }"))
                            .table;
    ASSERT_EQ(table.size(), 2U);
    EXPECT_EQ(table[1][6], "3");
    EXPECT_EQ(table[1][7], "3");
}

} // namespace
