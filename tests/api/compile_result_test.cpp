// SPDX-License-Identifier: MIT
#include <climits>

#include "api_test.hpp"

namespace {

// What becomes of the plug-in's result code.
using CompileResult = Api_test;

const std::string CALLS =
    compile_call({"shader_type", "fragment", "compiler_type", "openglessl"}, "void main() {}") +
    "\nrelease_outputs\n";

struct Row {
    int result;
    const char* error;
};

constexpr Row FAILURES[] = {
    {1, "Compiler Manager Error: Core not supported.\n"},
    {2, "Compiler Manager Error: Invalid Parameters.\n"},
    {3, "Compiler Manager Error: Binary output not supported.\n"},
    {4, "Compiler Manager Error: Compiler memory error.\n"},
    {5, ""},
    {-1, ""},
    {-4, ""},
    {256, ""},
    {INT_MAX, ""},
    {INT_MIN, ""},
};

// A section whose every output holds something.
void add_outputs(Fake_plugin& plugin, int result) {
    plugin.outputs("").result(result).a("error").b("warning").list().item("x").item(nullptr);
    plugin.binary("bytes");
}

TEST_F(CompileResult, ZeroIsSuccess) {
    Fake_plugin plugin = gles_plugin();
    plugin.outputs("").a("error").b("warning").list().item("x").binary("bytes");
    One_plugin one(plugin);
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(Request())); }), "");
    EXPECT_EQ(outputs.text(), "list(x) binary(6279746573) a(error) b(warning)");
    EXPECT_EQ(one.take_calls(), CALLS);
}

TEST_F(CompileResult, OtherCodesAreFailuresThatLeaveTheRecordZeroed) {
    for (const Row& row : FAILURES) {
        SCOPED_TRACE(row.result);
        Fake_plugin plugin = gles_plugin();
        add_outputs(plugin, row.result);
        One_plugin one(plugin);
        Outputs outputs;
        EXPECT_EQ(stderr_of([&] { EXPECT_FALSE(outputs.compile(Request())); }), row.error);
        EXPECT_TRUE(outputs.is_zeroed());
        // What the plug-in had made is handed back all the same.
        EXPECT_EQ(one.take_calls(), CALLS);
    }
}

TEST_F(CompileResult, OfOpenClIsTakenTheSameWay) {
    for (const Row& row : FAILURES) {
        SCOPED_TRACE(row.result);
        Fake_plugin plugin = opencl_plugin();
        add_outputs(plugin, row.result);
        One_plugin one(plugin, "opencl");
        Outputs outputs;
        EXPECT_EQ(
            stderr_of([&] { EXPECT_FALSE(outputs.compile(Request("kernel").kernels({"k"}))); }),
            row.error);
        EXPECT_TRUE(outputs.is_zeroed());
    }
}

TEST_F(CompileResult, OneCompileDoesNotDecideTheNext) {
    Fake_plugin plugin = gles_plugin();
    plugin.outputs("REFUSE").result(3).b("refused");
    plugin.outputs("ODD").result(77);
    plugin.outputs("").b("fine");
    One_plugin one(plugin);
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] {
                  EXPECT_TRUE(outputs.compile(Request().of("first")));
                  EXPECT_EQ(outputs.text(), "b(fine)");
                  EXPECT_FALSE(outputs.compile(Request().of("REFUSE").binary()));
                  EXPECT_TRUE(outputs.is_zeroed());
                  EXPECT_TRUE(outputs.compile(Request().of("second")));
                  EXPECT_EQ(outputs.text(), "b(fine)");
                  EXPECT_FALSE(outputs.compile(Request().of("ODD")));
                  EXPECT_TRUE(outputs.is_zeroed());
              }),
              "Compiler Manager Error: Binary output not supported.\n");
}

TEST_F(CompileResult, WhatThePluginSaysComesBeforeTheMessage) {
    Fake_plugin plugin = gles_plugin();
    plugin.outputs("").result(2).say("from the plug-in");
    One_plugin one(plugin);
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_FALSE(outputs.compile(Request())); }),
              "from the plug-in\nCompiler Manager Error: Invalid Parameters.\n");
}

TEST_F(CompileResult, ReleasingAFailedRecordFreesNothing) {
    Fake_plugin plugin = gles_plugin();
    add_outputs(plugin, 1);
    One_plugin one(plugin);
    vexaoc_outputs record;
    EXPECT_EQ(stderr_of([&] { EXPECT_FALSE(Request().compile(&record, 0)); }), FAILURES[0].error);
    // Any number of times: there is nothing in it.
    EXPECT_EQ(stderr_of([&] {
                  vexacm_release_compiler_outputs(&record);
                  vexacm_release_compiler_outputs(&record);
              }),
              "");
}

} // namespace
