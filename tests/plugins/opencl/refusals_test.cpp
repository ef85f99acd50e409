// SPDX-License-Identifier: MIT
// Sources that clang accepts, or that would take it or the translator to SPIR-V down.
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

const std::string KERNEL = "kernel void k(global int* p, int n, global float* f) { ";

// Errors of a kernel with that body; declarations stand on a line before it.
Texts errors_in(const std::string& body, const std::string& declarations = "") {
    return errors_of(declarations + "\n" + KERNEL + body + " }");
}

Texts untranslatable(const std::string& what, const std::string& where = "k") {
    return {"error: in '" + where + "': " + what + " cannot be translated to SPIR-V"};
}

TEST(Refusals, InlineAssembler) {
    EXPECT_EQ(errors_in("__asm__(\"nop\");"),
              Texts{"2:63: error: GNU-style inline assembly is disabled"});
    EXPECT_EQ(errors_in("int x; __asm__ volatile(\"mov %0, 1\" : \"=r\"(x)); p[0] = x;"),
              Texts{"2:71: error: GNU-style inline assembly is disabled"});
    EXPECT_EQ(errors_in("g();", "void g(void) __asm__(\"llvm.trap\");"),
              (Texts{"1:6: error: an asm label is not supported",
                     "1:6: error: 'g' is used but not defined"}));
    EXPECT_EQ(errors_in("p[0] = v;", "global int v __asm__(\"x\") = 1;"),
              Texts{"1:12: error: an asm label is not supported"});
}

TEST(Refusals, OddIntegers) {
    EXPECT_EQ(errors_in("_BitInt(27) x = n; p[0] = x;"),
              Texts{"2:56: error: '_BitInt' is not supported"});
    EXPECT_EQ(errors_in("", "struct s { _BitInt(3) a; }; typedef _BitInt(100) b;"),
              (Texts{"1:12: error: '_BitInt' is not supported",
                     "1:37: error: '_BitInt' is not supported"}));
    EXPECT_EQ(errors_in("__int128 x = n; p[0] = x * x;"),
              Texts{"2:56: error: __int128 is not supported on this target"});
}

TEST(Refusals, DebuggingPragmas) {
    for (const char* pragma :
         {"crash", "parser_crash", "overflow_stack", "llvm_fatal_error", "llvm_unreachable",
          "assert", "handle_crash", "dump k", "macro A", "captured", "nonsense", ""}) {
        const std::string text = std::string("clang __debug ") + pragma;
        EXPECT_EQ(errors_of("#pragma " + text + "\nkernel void k() {}"),
                  Texts{"1:15: error: '#pragma clang __debug' is not supported"});
        EXPECT_EQ(errors_of("kernel void k() { _Pragma(\"" + text + "\") }").size(), 1U);
    }
}

TEST(Refusals, OddVectors) {
    for (const char* attribute : {"ext_vector_type(5)", "ext_vector_type(1)", "vector_size(128)"})
        EXPECT_EQ(errors_in("", "typedef char v __attribute__((" + std::string(attribute) + "));"),
                  Texts{"1:9: error: a vector must have 2, 3, 4, 8 or 16 elements"})
            << attribute;
    EXPECT_EQ(
        errors_in("v x = 1; p[0] = x.x;", "typedef int v __attribute__((ext_vector_type(4)));"),
        Texts{});
}

TEST(Refusals, LargeVectors) {
    for (const char* size : {"100000", "0xffffffff", "4294967297", "n", "(4)", "-1"})
        EXPECT_EQ(errors_in("", "typedef int v __attribute__((ext_vector_type(" +
                                    std::string(size) + ")));"),
                  Texts{"1:46: fatal error: a vector's size must be a plain small number"})
            << size;
    EXPECT_EQ(errors_in("", "typedef int v __attribute__((__vector_size__(1 << 30)));"),
              Texts{"1:48: fatal error: a vector's size must be a plain small number"});
    EXPECT_EQ(errors_in("int vector_size = n; p[0] = vector_size + (vector_size);"), Texts{});
}

TEST(Refusals, OrdersAndScopesThatAreNone) {
    EXPECT_EQ(errors_in("work_group_barrier(1, 9);"),
              untranslatable("this use of 'work_group_barrier(unsigned int, memory_scope)'"));
    EXPECT_EQ(errors_in("atomic_work_item_fence(1, 1, 0);"),
              untranslatable("this use of 'atomic_work_item_fence(unsigned int, memory_order, "
                             "memory_scope)'"));
    for (const char* call : {"fetch_add_explicit(a, 1, 1)", "fetch_add_explicit(a, 1, 9, 1)",
                             "fetch_add_explicit(a, 1, 0, 9)", "store_explicit(a, 1, 99)",
                             "compare_exchange_strong_explicit(a, &e, 1, 5, 99, 1)"})
        EXPECT_EQ(
            errors_in("volatile global atomic_int* a = 0; int e; atomic_" + std::string(call) + ";")
                .size(),
            1U)
            << call;
    EXPECT_EQ(errors_in("volatile global atomic_int* a = 0; int e = 1;"
                        "atomic_compare_exchange_strong_explicit(a, &e, 2, memory_order_acq_rel,"
                        "memory_order_acquire, memory_scope_device);"),
              Texts{});
}

TEST(Refusals, AddressSpaces) {
    EXPECT_EQ(errors_in("__attribute__((address_space(999))) int* q = 0; p[0] = *q;"),
              untranslatable("the type 'i32 addrspace(999)*'"));
    EXPECT_EQ(errors_in("__attribute__((address_space(5))) int* q = 0; p[0] = *q;"),
              untranslatable("the type 'i32 addrspace(5)*'"));
}

TEST(Refusals, SizesThatVary) {
    EXPECT_EQ(errors_in("int a[n]; a[0] = 1;"),
              Texts{"2:62: error: variable length arrays are not supported in OpenCL"});
    EXPECT_EQ(errors_in("int* q = __builtin_alloca(n); p[0] = *q;").size(), 1U);
}

TEST(Refusals, EmptyTypes) {
    EXPECT_EQ(errors_in("struct e x; struct e y = x;", "struct e {};"),
              untranslatable("the type '%struct.e = type {}'"));
    EXPECT_EQ(errors_in("int a[0]; p[0] = sizeof a;"), untranslatable("the type '[0 x i32]'"));
}

TEST(Refusals, BuiltInsOfOtherTargets) {
    EXPECT_EQ(errors_in("__builtin_trap();"), untranslatable("'llvm.trap'"));
    EXPECT_EQ(errors_in("__builtin_debugtrap();"), untranslatable("'llvm.debugtrap'"));
    EXPECT_EQ(errors_in("p[0] = __builtin_readcyclecounter();"),
              untranslatable("'llvm.readcyclecounter'"));
    EXPECT_EQ(errors_in("p[0] = (long)__builtin_return_address(0);").size(), 1U);
    EXPECT_EQ(errors_in("__builtin_memcpy_inline(p, n, 8);"),
              Texts{"2:56: fatal error: this built-in is not supported"});
    EXPECT_EQ(errors_in("__sync_fetch_and_add(p, 1);"), Texts{});
    EXPECT_EQ(errors_in("__sync_fetch_and_nand(p, 1);"),
              untranslatable("the atomic operation 'nand'"));
}

TEST(Refusals, ArgumentsThatMustBeConstant) {
    EXPECT_EQ(errors_in("barrier(n);"), untranslatable("this use of 'barrier(unsigned int)'"));
    EXPECT_EQ(errors_in("mem_fence(n);"), untranslatable("this use of 'mem_fence(unsigned int)'"));
    EXPECT_EQ(errors_in("barrier(CLK_LOCAL_MEM_FENCE | CLK_GLOBAL_MEM_FENCE);"), Texts{});
}

TEST(Refusals, Samplers) {
    const std::string read = "kernel void k(read_only image2d_t i, global float4* o) {\n"
                             "o[0] = read_imagef(i, s, (int2)(0)); }";
    EXPECT_EQ(errors_of("constant sampler_t s = CLK_ADDRESS_CLAMP | CLK_FILTER_NEAREST;\n" + read),
              Texts{});
    EXPECT_EQ(errors_of("constant sampler_t s = 0xffffffff;\n" + read),
              untranslatable("this sampler"));
    EXPECT_EQ(errors_of("constant sampler_t s = CLK_ADDRESS_CLAMP;\n" + read),
              untranslatable("this sampler"));
}

TEST(Refusals, InitialValuesFromAddresses) {
    EXPECT_EQ(errors_in("", "global int g; constant long a = (long)&g;"),
              untranslatable("an initial value that is computed from an address", "a"));
    EXPECT_EQ(errors_in("", "global int g; constant struct { global int* a; } s = {&g};"),
              untranslatable("an address among initial values", "s"));
    EXPECT_EQ(
        errors_in("p[0] = *q;", "constant int g[3] = {1, 2, 3}; constant int* constant q = g;"),
        Texts{});
}

TEST(Refusals, FunctionPointers) {
    EXPECT_EQ(errors_in("int (*q)(int) = g;", "int g(int x) { return x; }"),
              (Texts{"2:61: error: pointers to functions are not allowed",
                     "2:72: error: taking address of function is not allowed"}));
    const std::string enabled = "#pragma OPENCL EXTENSION __cl_clang_function_pointers : enable\n";
    EXPECT_EQ(
        errors_in("int (*q)(int) = g; p[0] = q(n);", enabled + "int g(int x) { return x; }").size(),
        2U);
}

TEST(Refusals, NamesOfKernels) {
    EXPECT_EQ(errors_of("kernel void __spirv_ControlBarrier(global int* p) {}"),
              Texts{"1:13: error: '__spirv_ControlBarrier' is reserved and cannot be a kernel's "
                    "name"});
    EXPECT_EQ(errors_of("kernel void _Z7barrierj(global int* p) {}"),
              Texts{"1:13: error: '_Z7barrierj' is reserved and cannot be a kernel's name"});
}

TEST(Refusals, BuiltInsThatOnlyTheSourceDeclares) {
    EXPECT_EQ(errors_in("p[0] = __spirv_AtomicIAdd(n);", "int __spirv_AtomicIAdd(int);"),
              Texts{"1:5: error: '__spirv_AtomicIAdd' is used but not defined"});
    EXPECT_EQ(errors_in("_Z12read_imagef();", "void _Z12read_imagef(void);"),
              Texts{"1:6: error: '_Z12read_imagef' is used but not defined"});
}

TEST(Refusals, AttributesThatNeedALinkerOrASystem) {
    for (const char* declaration :
         {"__attribute__((constructor)) void g() {}", "__thread int z;",
          "int g(int x, ...) { return x; }", "global int v __attribute__((annotate(\"x\")));"})
        EXPECT_FALSE(errors_in("", declaration).empty()) << declaration;
}

TEST(Refusals, OtherTypes) {
    for (const char* body : {"long double x = n;", "__float128 x = n;", "__bf16 x;",
                             "void* t[] = {&&a, &&b}; goto *t[n]; a: b: ;",
                             "__builtin_va_list l; p[0] = __builtin_va_arg(l, int);"})
        EXPECT_FALSE(errors_in(body).empty()) << body;
}

// Each is compiled or refused; that there is an end without a crash is what matters.
TEST(Refusals, WhateverElseComesToAnEnd) {
    const Open_plugin plugin;
    for (const char* body :
         {"int (^b)(int) = ^(int x) { return x + 1; }; p[0] = b(n);",
          "void (^b)(void) = ^{ p[0] = n; }; b();",
          "enqueue_kernel(get_default_queue(), 0, ndrange_1D(1), ^{ p[0] = 1; });",
          "p[0] = get_kernel_work_group_size(^{ p[0] = 1; });",
          "_Atomic int x; x++; p[0] = x;",
          "atomic_int x; atomic_init(&x, 1); p[0] = atomic_load(&x);",
          "__sync_fetch_and_add(p, 1); __sync_synchronize();",
          "p[0] = __sync_bool_compare_and_swap(p, 1, 2);",
          "float e; atomic_compare_exchange_strong((volatile global atomic_float*)f, &e, 2.0f);",
          "void* b[5]; if (__builtin_setjmp(b)) __builtin_longjmp(b, 1);",
          "int r; p[0] = __builtin_sadd_overflow(n, 1, &r) + __builtin_umul_overflow(n, 2u, p);",
          "__builtin_memcpy(p, f, n); __builtin_memset(p, n, n); __builtin_memmove(p, f, 9);",
          "__builtin_prefetch(p); p[0] = __builtin_popcount(n) + __builtin_bswap32(n);",
          "f[0] = __builtin_sinf(f[1]) + __builtin_powif(f[1], n) + __builtin_canonicalizef(f[2]);",
          "int x __attribute__((annotate(\"x\"))) = 1; p[0] = __builtin_annotation(x, \"y\");",
          "event_t e = 0; wait_group_events(1, &e); event_t a[3];",
          "queue_t q; clk_event_t c;",
          "printf(\"%n%q%v4hld\", n); printf(\"%s %d\\n\", \"x\", n);",
          "p[0] = sub_group_shuffle(n, 1) + sub_group_elect() + sub_group_ballot(n).x;",
          "p[0] = dot((char4)(n), (char4)(n)); bit_reverse(n);",
          "k(p, n, f);",
          "struct { char c[7]; union { int i; float f; } u; } s; s.u.f = 1.0f; p[0] = s.u.i;",
          "switch (n) { case 1 ... 5: p[0] = 1; } for (;;) ;",
          "_Complex float x = 1; f[0] = __real__ (x * x);",
          "__builtin_unreachable();"}) {
        const Compiled compiled = compile(plugin, Request(KERNEL + body + " }"));
        EXPECT_EQ(compiled.result, VEXAOC_SUCCESS) << body;
        EXPECT_EQ(compiled.errors.empty(), !compiled.binary.empty()) << body;
    }
}

TEST(Refusals, BytesThatAreNoText) {
    const Open_plugin plugin;
    std::string bytes;
    for (int i = 1; i < 256; ++i)
        bytes += static_cast<char>(i);
    EXPECT_FALSE(compile(plugin, Request(bytes + bytes)).errors.empty());
    EXPECT_FALSE(compile(plugin, Request("\"")).errors.empty());
    EXPECT_FALSE(compile(plugin, Request("/*")).errors.empty());
    EXPECT_FALSE(compile(plugin, Request("kernel")).errors.empty());
}

} // namespace
