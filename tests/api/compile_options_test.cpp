// SPDX-License-Identifier: MIT
#include <climits>

#include "api_test.hpp"

namespace {

// What the plug-in is told of a request.
using CompileOptions = Api_test;

using Options = std::vector<std::string>;

// An address that cannot be read.
const char* const* unreadable() {
    return reinterpret_cast<const char* const*>(alignof(const char*));
}

Fake_plugin rotating(Fake_plugin plugin) {
    return plugin.pair("prerotate", "true");
}

void expect_options(One_plugin& plugin, const Request& request, const Options& options) {
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(request)); }), "");
    EXPECT_EQ(plugin.take_calls(),
              compile_call(options, request.source, request.binary_output) + "\nrelease_outputs\n");
}

TEST_F(CompileOptions, OfOpenGlEsStandInTheirOrder) {
    One_plugin plugin(gles_plugin("310", "GL_EXT_geometry_shader GL_EXT_tessellation_shader"));
    for (const std::string type : {"fragment", "vertex", "compute", "geometry",
                                   "tessellation_control", "tessellation_evaluation"}) {
        expect_options(plugin, Request(type.c_str()),
                       {"shader_type", type, "compiler_type", "openglessl"});
        expect_options(plugin, Request(type.c_str()).define({"A"}),
                       {"shader_type", type, "compiler_type", "openglessl", "define", "A"});
        expect_options(plugin, Request(type.c_str()).define({"B=1", "A", "B=1"}),
                       {"shader_type", type, "compiler_type", "openglessl", "define", "B=1",
                        "define", "A", "define", "B=1"});
    }
}

TEST_F(CompileOptions, OfOpenClStandInTheirOrder) {
    One_plugin plugin(opencl_plugin(), "opencl");
    expect_options(plugin, Request("kernel").kernels({"k"}),
                   {"shader_type", "kernel", "kernel_name", "k", "compiler_type", "opencl"});
    expect_options(plugin, Request("kernel").kernels({"z", "a", "z"}).define({"D"}),
                   {"shader_type", "kernel", "kernel_name", "z", "kernel_name", "a", "kernel_name",
                    "z", "compiler_type", "opencl", "define", "D"});
}

TEST_F(CompileOptions, PrerotateIsToldOnlyWhereItIsSupported) {
    One_plugin plugin(rotating(gles_plugin()));
    expect_options(
        plugin, Request(),
        {"shader_type", "fragment", "prerotate", "false", "compiler_type", "openglessl"});
    expect_options(plugin, Request().rotated(),
                   {"shader_type", "fragment", "prerotate", "true", "compiler_type", "openglessl"});
    expect_options(plugin, Request("vertex").rotated().define({"A", "B"}),
                   {"shader_type", "vertex", "prerotate", "true", "compiler_type", "openglessl",
                    "define", "A", "define", "B"});
}

TEST_F(CompileOptions, EverythingAtOnceOnOpenCl) {
    One_plugin plugin(rotating(opencl_plugin()), "opencl");
    expect_options(plugin, Request("kernel").kernels({"one", "two"}).define({"D=1"}),
                   {"shader_type", "kernel", "kernel_name", "one", "kernel_name", "two",
                    "prerotate", "false", "compiler_type", "opencl", "define", "D=1"});
    expect_options(plugin, Request("kernel").kernels({"one"}).rotated().binary(),
                   {"shader_type", "kernel", "kernel_name", "one", "prerotate", "true",
                    "compiler_type", "opencl"});
}

TEST_F(CompileOptions, TheBinaryIsAskedForAsTheCallerDoes) {
    for (const std::uint32_t supported : {0u, 1u}) {
        Fake_plugin binary = gles_plugin();
        One_plugin plugin(binary.binary_output(supported));
        for (const bool wanted : {false, true})
            expect_options(plugin, Request().binary(wanted),
                           {"shader_type", "fragment", "compiler_type", "openglessl"});
    }
}

TEST_F(CompileOptions, TheCoreIsToldAsThePluginReportedIt) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("Vexa-K580", "r2p1_05rel3").core("k46x", "r0p0_00rel0").core("k99x", "any text");
    plugin.pair("openglessl_extensions", "GL_X");
    One_plugin one(plugin);
    struct Row {
        const char* core;
        const char* revision;
    };
    const Row rows[] = {
        {"Vexa-K580", "r2p1_05rel3"}, {"k46x", "r0p0_00rel0"}, {"k99x", "any text"}};
    unsigned int id = 0;
    for (const Row& row : rows) {
        Outputs outputs;
        EXPECT_TRUE(outputs.compile(Request(), id++));
        EXPECT_EQ(one.take_calls(),
                  compile_call({"shader_type", "fragment", "compiler_type", "openglessl"},
                               "void main() {}", false, row.core, row.revision) +
                      "\nrelease_outputs\n");
    }
}

TEST_F(CompileOptions, TextsArePassedOnByteByByte) {
    One_plugin plugin(opencl_plugin(), "opencl");
    const std::string large(1 << 20, 'x');
    const std::string large_source = "a\n" + std::string(1 << 20, 'y') + "\n\tb";
    for (const std::string& text :
         {std::string(), std::string(" "), std::string("two words"), std::string("line\nline\r\n"),
          std::string("\x01\x7f\x80\xff"), std::string("%s%n%20"), std::string("-DA=\"b c\""),
          std::string("kernel_name"), large}) {
        SCOPED_TRACE(text.substr(0, 20));
        expect_options(plugin,
                       Request("kernel").kernels({text.c_str(), "k"}).define({text.c_str()}),
                       {"shader_type", "kernel", "kernel_name", text, "kernel_name", "k",
                        "compiler_type", "opencl", "define", text});
        expect_options(plugin, Request("kernel").kernels({"k"}).of(text.c_str()),
                       {"shader_type", "kernel", "kernel_name", "k", "compiler_type", "opencl"});
    }
    expect_options(plugin, Request("kernel").kernels({"k"}).of(large_source.c_str()),
                   {"shader_type", "kernel", "kernel_name", "k", "compiler_type", "opencl"});
}

TEST_F(CompileOptions, MayBeVeryMany) {
    One_plugin plugin(opencl_plugin(), "opencl");
    Options options = {"shader_type", "kernel"};
    std::vector<std::string> names;
    std::vector<std::string> defines;
    for (int i = 0; i < 2000; ++i) {
        names.push_back("name" + std::to_string(i));
        options.insert(options.end(), {"kernel_name", names.back()});
    }
    options.insert(options.end(), {"compiler_type", "opencl"});
    for (int i = 0; i < 3000; ++i) {
        defines.push_back("D" + std::to_string(i));
        options.insert(options.end(), {"define", defines.back()});
    }
    std::vector<const char*> name_texts;
    for (const std::string& name : names)
        name_texts.push_back(name.c_str());
    std::vector<const char*> define_texts;
    for (const std::string& define : defines)
        define_texts.push_back(define.c_str());
    expect_options(plugin, Request("kernel").kernels(name_texts).define(define_texts), options);
}

TEST_F(CompileOptions, OnlyAsManyTextsAsCountedAreRead) {
    One_plugin plugin(opencl_plugin(), "opencl");
    expect_options(
        plugin,
        Request("kernel")
            .kernels({"one", nullptr})
            .num_kernels(1)
            .define({"A", nullptr})
            .num_definitions(1),
        {"shader_type", "kernel", "kernel_name", "one", "compiler_type", "opencl", "define", "A"});
}

TEST_F(CompileOptions, ANegativeNumberOfDefinesIsNone) {
    One_plugin plugin(rotating(gles_plugin("310", "GL_EXT_geometry_shader")));
    for (const int count : {0, -1, -2, -3, INT_MIN}) {
        SCOPED_TRACE(count);
        Outputs outputs;
        EXPECT_EQ(stderr_of([&] {
                      EXPECT_TRUE(vexacm_compile(&outputs.record, "source", "geometry",
                                                 unreadable(), count, false, false, unreadable(),
                                                 count, 0));
                  }),
                  "");
        EXPECT_TRUE(outputs.is_zeroed());
        EXPECT_EQ(plugin.take_calls(), compile_call({"shader_type", "geometry", "prerotate",
                                                     "false", "compiler_type", "openglessl"},
                                                    "source") +
                                           "\nrelease_outputs\n");
    }
}

TEST_F(CompileOptions, NamesAreNotReadForOtherTypesThanKernels) {
    One_plugin plugin(gles_plugin("310", "GL_EXT_geometry_shader"));
    Outputs outputs;
    EXPECT_TRUE(vexacm_compile(&outputs.record, "source", "geometry", unreadable(), 5, false, false,
                               nullptr, 0, 0));
    EXPECT_TRUE(vexacm_compile(&outputs.record, "source", "vertex", unreadable(), 0, false, false,
                               nullptr, 0, 0));
    EXPECT_EQ(lines_of(plugin.take_calls(), "kernel_name"), "");
}

TEST_F(CompileOptions, TheCallersTextsAreHisOwn) {
    // The plug-in overwrites every option that it is given.
    One_plugin plugin(rotating(opencl_plugin()), "opencl");
    char name[] = "name";
    char define[] = "A=1";
    char type[] = "kernel";
    char source[] = "source";
    const Request request = Request(type).of(source).kernels({name}).define({define});
    for (int i = 0; i < 3; ++i)
        expect_options(plugin, request,
                       {"shader_type", "kernel", "kernel_name", "name", "prerotate", "false",
                        "compiler_type", "opencl", "define", "A=1"});
    EXPECT_STREQ(name, "name");
    EXPECT_STREQ(define, "A=1");
    EXPECT_STREQ(type, "kernel");
    EXPECT_STREQ(source, "source");
    EXPECT_STREQ(vexacm_get_api_name(0), "opencl");
}

TEST_F(CompileOptions, OneTextMayStandInManyPlaces) {
    One_plugin plugin(opencl_plugin(), "opencl");
    char kernel[] = "kernel";
    expect_options(plugin, Request(kernel).of(kernel).kernels({kernel, kernel}).define({kernel}),
                   {"shader_type", "kernel", "kernel_name", "kernel", "kernel_name", "kernel",
                    "compiler_type", "opencl", "define", "kernel"});
    EXPECT_STREQ(kernel, "kernel");
}

} // namespace
