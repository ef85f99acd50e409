// SPDX-License-Identifier: MIT
#include <vexacm.hpp>

#include <gtest/gtest.h>
#include <type_traits>

#include "captured_stderr.hpp"
#include "plugin_directory.hpp"

namespace {

static_assert(!std::is_copy_constructible_v<vexacm::Library>);
static_assert(!std::is_copy_constructible_v<vexacm::Outputs>);
static_assert(std::is_nothrow_move_constructible_v<vexacm::Outputs>);
static_assert(std::is_nothrow_move_assignable_v<vexacm::Outputs>);

class Owners : public testing::Test {
protected:
    Owners() {
        Fake_plugin plugin = Fake_plugin::of_type("openglessl");
        plugin.core("k46x", "r0p1_00rel0").core("k58x", "r0p0_00rel0").binary_output(1);
        plugin.pair("openglessl_version", "320").pair("openglessl_extensions", "GL_ONE");
        plugin.outputs("ERROR").a("3:4: error");
        plugin.outputs("BINARY").binary("\x01\x02");
        plugin.outputs("FAIL").result(9);
        plugins.add_driver("openglessl", "Vexa-K300_r5p0-06rel0", plugin);
    }

    /// A request for a vertex shader.
    static vexacm::Request request(const std::string& source) {
        vexacm::Request request;
        request.source = source;
        request.stage = "vertex";
        return request;
    }

    /// How often the plug-in was asked for this since the last call.
    std::size_t count(const std::string& call) {
        const std::string log = plugins.take_log();
        std::size_t found = 0;
        for (std::size_t at = log.find(call); at != std::string::npos; at = log.find(call, at + 1))
            ++found;
        return found;
    }

    Plugin_directory plugins;
};

TEST_F(Owners, LibraryEndsThenPluginsAreClosed) {
    { const vexacm::Library library(plugins.root()); }
    EXPECT_EQ(count(" unload"), 1U);
}

TEST_F(Owners, InitialisationThrowsThenSoDoesTheLibrary) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k46x", "r0p0").pair("openglessl_version", "new");
    plugins.add_driver("openglessl", "Vexa-K300_r6p0-00rel0", plugin);
    EXPECT_THROW(vexacm::Library(plugins.root()), std::invalid_argument);
}

TEST_F(Owners, FiltersThenIdsOfThoseThatPass) {
    const vexacm::Library library(plugins.root());
    EXPECT_EQ(vexacm::Compiler_ids().size(), 2U);
    vexacm::Filters filters;
    filters.core = "Vexa-K460";
    const vexacm::Compiler_ids ids(filters);
    EXPECT_EQ(std::vector<unsigned int>(ids.begin(), ids.end()), std::vector<unsigned int>{1});
    filters.min_version = 321;
    EXPECT_TRUE(vexacm::Compiler_ids(filters).empty());
}

TEST_F(Owners, CompilerThenItsProperties) {
    const vexacm::Library library(plugins.root());
    const vexacm::Compiler compiler(1);
    EXPECT_EQ(compiler.id, 1U);
    EXPECT_STREQ(compiler.driver, "Vexa-K300_r5p0-06rel0");
    EXPECT_STREQ(compiler.core, "Vexa-K460");
    EXPECT_STREQ(compiler.revision, "r0p1_00rel0");
    EXPECT_STREQ(compiler.api, "openglessl");
    EXPECT_EQ(compiler.version, 320U);
    EXPECT_TRUE(compiler.binary_output);
    EXPECT_FALSE(compiler.prerotate);
    EXPECT_STREQ(compiler.extensions(), "GL_ONE ");
}

TEST_F(Owners, RequestThenAllOfItIsPassedOn) {
    const vexacm::Library library(plugins.root());
    vexacm::Request everything = request("x");
    everything.defines = {"A", "B=1"};
    everything.binary_output = true;
    EXPECT_TRUE(vexacm::compile(everything, 0));
    EXPECT_NE(plugins.take_log().find("core=k58x revision=r0p0_00rel0 binary=1 outputs=zeroed "
                                      "options=8 shader_type vertex compiler_type openglessl "
                                      "define A define B=1 source=x\n"),
              std::string::npos);
}

TEST_F(Owners, SourceHasErrorsThenTheyAreInTheOutputs) {
    const vexacm::Library library(plugins.root());
    const auto outputs = vexacm::compile(request("ERROR"), 0);
    ASSERT_TRUE(outputs);
    EXPECT_FALSE(outputs->compiled());
    EXPECT_STREQ((*outputs)->strings_a[0], "3:4: error");
    EXPECT_EQ(outputs->binary(), "");
}

TEST_F(Owners, RequestIsRefusedThenNothing) {
    const vexacm::Library library(plugins.root());
    EXPECT_FALSE(vexacm::compile(request("FAIL"), 0));
}

// The sanitizers see a record that is released twice or never.
TEST_F(Owners, OutputsAreMovedThenReleasedOnce) {
    const vexacm::Library library(plugins.root());
    auto first = vexacm::compile(request("BINARY"), 0);
    auto second = vexacm::compile(request("ERROR"), 0);
    ASSERT_TRUE(first && second);
    vexacm::Outputs moved(std::move(*first));
    EXPECT_EQ(first->binary(), "");
    EXPECT_EQ(moved.binary(), "\x01\x02");
    *second = std::move(moved);
    EXPECT_EQ(second->binary(), "\x01\x02");
}

TEST_F(Owners, EverythingThenNothingIsTold) {
    EXPECT_EQ(stderr_of([this] {
                  plugins.add_driver("opencl", "Vexa-K300_r5p0-06rel0",
                                     Fake_plugin::of_type("opencl"));
                  const vexacm::Library library(plugins.root());
                  const vexacm::Compiler_ids ids;
                  const auto outputs = vexacm::compile(request("x"), *ids.begin());
              }),
              "");
}

} // namespace
