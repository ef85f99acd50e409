// SPDX-License-Identifier: MIT
#include "open_plugin.hpp"
#include "process_state.hpp"

#include <gtest/gtest.h>

#include <memory>

namespace {

void expect_kernel_compiles(const Open_plugin& plugin) {
    const Compiled compiled =
        compile(plugin, Request("kernel void k(global int* p) { p[0] = 1; }", "kernel"));
    EXPECT_EQ(compiled.errors, Texts{});
    EXPECT_FALSE(compiled.binary.empty());
}

void expect_shader_compiles(const Open_plugin& plugin) {
    EXPECT_EQ(compile(plugin, Request("void main() { x; }", "vertex")).errors,
              Texts{"ERROR: 0:1: 'x' : undeclared identifier"});
}

using Owner = std::unique_ptr<Open_plugin>;

// Bits: who is opened first, who is closed first, who is used first.
class Side_by_side : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Orders, Side_by_side, testing::Range(0, 8));

TEST_P(Side_by_side, AnyOrderWorks) {
    const bool opened_first = (GetParam() & 1) != 0;
    const bool closed_first = (GetParam() & 2) != 0;
    const bool used_first = (GetParam() & 4) != 0;
    for (int round = 0; round < 3; ++round) {
        Owner kernels = opened_first ? std::make_unique<Open_plugin>(OPENCL_PLUGIN_FILE) : nullptr;
        Owner shaders = std::make_unique<Open_plugin>(GLSL_PLUGIN_FILE);
        if (!opened_first)
            kernels = std::make_unique<Open_plugin>(OPENCL_PLUGIN_FILE);
        if (used_first)
            expect_kernel_compiles(*kernels);
        expect_shader_compiles(*shaders);
        expect_kernel_compiles(*kernels);
        (closed_first ? kernels : shaders).reset();
        if (kernels)
            expect_kernel_compiles(*kernels);
        if (shaders)
            expect_shader_compiles(*shaders);
    }
    EXPECT_FALSE(is_mapped(OPENCL_PLUGIN_FILE));
    EXPECT_FALSE(is_mapped(GLSL_PLUGIN_FILE));
}

} // namespace
