// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "api_test.hpp"

namespace {

// The copies that callers get.
using OutputsCopy = Api_test;

constexpr const char* NULL_TEXT = "Compiler Manager Error: NULL inputs to string_copy.\n";

// A plug-in whose outputs section is still to be filled.
Fake_plugin with_outputs() {
    Fake_plugin plugin = gles_plugin();
    plugin.outputs("");
    return plugin;
}

// Expects this copy, these messages, and a silent release.
void expect_copy(const Fake_plugin& plugin, const std::string& text,
                 const std::string& error = "") {
    One_plugin one(plugin);
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(Request())); }), error);
    EXPECT_EQ(outputs.text(), text);
    EXPECT_EQ(stderr_of([&] { outputs.release(); }), "");
}

TEST_F(OutputsCopy, OfNothingIsZeroed) {
    One_plugin untouched(gles_plugin());
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(Request())); }), "");
    EXPECT_TRUE(outputs.is_zeroed());
}

TEST_F(OutputsCopy, OfNothingFromARecordFullOfPaddingIsZeroed) {
    One_plugin written(with_outputs());
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(Request())); }), "");
    EXPECT_TRUE(outputs.is_zeroed());
}

TEST_F(OutputsCopy, HoldsEveryKindOfOutput) {
    Fake_plugin plugin = with_outputs();
    plugin.list().item("one").list().item("two").item("three").a("error");
    plugin.binary(std::string("\x00\xff\x00", 3));
    expect_copy(plugin, "list(one) list(two,three) binary(00ff00) a(error)");
    plugin.b("warning").b("note");
    expect_copy(plugin, "list(one) list(two,three) binary(00ff00) a(error) b(warning,note)");
}

TEST_F(OutputsCopy, HoldsOneKindOfOutputAlone) {
    expect_copy(with_outputs().a("x").a("y"), "a(x,y)");
    expect_copy(with_outputs().b("x").b("y"), "b(x,y)");
    expect_copy(with_outputs().list().item("x").item("y"), "list(x,y)");
    expect_copy(with_outputs().binary("a"), "binary(61)");
}

TEST_F(OutputsCopy, LeavesThePaddingZeroed) {
    Fake_plugin plugin = with_outputs();
    One_plugin one(plugin.list().item("x").a("a").b("b").binary("c"));
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request()));
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&outputs.record);
    for (const std::size_t padding : {4u, 20u, 36u, 52u})
        EXPECT_TRUE(std::all_of(bytes + padding, bytes + padding + 4,
                                [](unsigned char byte) { return byte == 0; }));
}

TEST_F(OutputsCopy, TextsAreCopiedByteByByte) {
    const std::string large(1 << 20, 'x');
    Fake_plugin plugin = with_outputs();
    plugin.a("").a(" ").a("two\nlines\n").a("\x01\x7f\x80\xff").a("%s%n").a(large.c_str());
    expect_copy(plugin, "a(, ,two\nlines\n,\x01\x7f\x80\xff,%s%n," + large + ")");
}

TEST_F(OutputsCopy, MayBeVeryLarge) {
    Fake_plugin plugin = with_outputs();
    std::string expected;
    for (int i = 0; i < 60; ++i) {
        plugin.list();
        expected += " list(";
        for (int item = 0; item < i; ++item) {
            plugin.item("x");
            expected += item ? ",x" : "x";
        }
        expected += ")";
    }
    std::string texts;
    for (int i = 0; i < 5000; ++i) {
        const std::string text = "text " + std::to_string(i);
        plugin.a(text.c_str()).b(text.c_str());
        texts += (i ? "," : "") + text;
    }
    const std::string bytes(1 << 20, '\x5a');
    std::string hex;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        hex += "5a";
    plugin.binary(bytes);
    expect_copy(plugin,
                expected.substr(1) + " binary(" + hex + ") a(" + texts + ") b(" + texts + ")");
}

TEST_F(OutputsCopy, AListWithoutTextsHasAnArrayWithoutElements) {
    Fake_plugin plugin = with_outputs();
    One_plugin one(plugin.list().list().item("x").list());
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request()));
    EXPECT_EQ(outputs.text(), "list() list(x) list()");
    EXPECT_NE(outputs.record.string_lists[0].strings, nullptr);
    EXPECT_NE(outputs.record.string_lists[2].strings, nullptr);
}

TEST_F(OutputsCopy, NullTextsAreToldAndStayNull) {
    expect_copy(with_outputs().a(nullptr), "a((null))", NULL_TEXT);
    expect_copy(with_outputs().b(nullptr), "b((null))", NULL_TEXT);
    expect_copy(with_outputs().list().item(nullptr), "list((null))", NULL_TEXT);
    const std::string three = std::string(NULL_TEXT) + NULL_TEXT + NULL_TEXT;
    expect_copy(with_outputs().a("x").a(nullptr).a("y").a(nullptr).a(nullptr).a(""),
                "a(x,(null),y,(null),(null),)", three);
    expect_copy(
        with_outputs().b(nullptr).a(nullptr).list().item("x").list().item(nullptr).item("y"),
        "list(x) list((null),y) a((null)) b((null))", three);
}

TEST_F(OutputsCopy, APointerBesideACountOfZeroIsIgnored) {
    Fake_plugin plugin = with_outputs();
    plugin.list().item("x").line("num-lists 0").a("x").line("num-a 0").b("x").line("num-b 0");
    plugin.binary("x").line("binary-size 0");
    One_plugin one(plugin);
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(Request())); }), "");
    EXPECT_TRUE(outputs.is_zeroed());
}

TEST_F(OutputsCopy, AnEmptyBinaryStaysNull) {
    One_plugin one(with_outputs().binary(""));
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request()));
    EXPECT_TRUE(outputs.is_zeroed());
}

TEST_F(OutputsCopy, ANullPointerBesideACountReadsAsEmpty) {
    for (const char* const count : {"1", "1000000", "4294967295"}) {
        SCOPED_TRACE(count);
        Fake_plugin plugin = with_outputs();
        for (const char* const name : {"num-lists ", "num-a ", "num-b ", "binary-size "})
            plugin.line(std::string(name) + count);
        One_plugin one(plugin);
        Outputs outputs;
        EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(Request())); }), "");
        EXPECT_TRUE(outputs.is_zeroed());
    }
    Fake_plugin plugin = with_outputs();
    plugin.list().item("x").a("x").b("x").binary("x");
    for (const char* const line : {"null-lists", "null-a", "null-b", "null-binary"})
        plugin.line(line);
    expect_copy(plugin, "");
    plugin = with_outputs();
    expect_copy(plugin.list().item("x").line("null-items").list().line("num-items 7"),
                "list() list()");
}

TEST_F(OutputsCopy, CountsEndTheLists) {
    Fake_plugin plugin = with_outputs();
    plugin.a("x").a(nullptr).line("num-a 1").b("x").b("y").b(nullptr).line("num-b 2");
    plugin.list().item("x").item(nullptr).line("num-items 1").list().item(nullptr);
    plugin.line("num-lists 1").binary("xyz").line("binary-size 2");
    expect_copy(plugin, "list(x) binary(7879) a(x) b(x,y)");
}

TEST_F(OutputsCopy, IsTheCallersOwn) {
    // The plug-in overwrites its outputs when they are handed back, and again
    // at the next compile.
    Fake_plugin plugin = with_outputs();
    One_plugin one(plugin.list().item("x").a("a").b("b").binary("c"));
    Outputs first;
    Outputs second;
    EXPECT_TRUE(first.compile(Request()));
    EXPECT_TRUE(second.compile(Request()));
    first.record.strings_a[0][0] = 'Z';
    first.record.binary[0] = 0;
    EXPECT_EQ(second.text(), "list(x) binary(63) a(a) b(b)");
    second.release();
    EXPECT_EQ(first.text(), "list(x) binary(00) a(Z) b(b)");
}

TEST_F(OutputsCopy, OutlivesTheLibrariesAndThePlugin) {
    Fake_plugin plugin = with_outputs();
    plugin.list().item("x").item(nullptr).a("error").b("warning").binary("bytes");
    plugins.add_driver("openglessl", NEWEST, plugin);
    EXPECT_EQ(initialise(), "");
    Outputs outputs;
    EXPECT_EQ(stderr_of([&] { EXPECT_TRUE(outputs.compile(Request())); }), NULL_TEXT);
    plugins.take_log();
    vexacm_release_libraries();
    EXPECT_EQ(plugins.take_log(), calls("openglessl", NEWEST, {"unload"}));
    plugins.remove("openglessl");
    EXPECT_EQ(outputs.text(), "list(x,(null)) binary(6279746573) a(error) b(warning)");

    // Any catalogue releases it.
    const Plugin_directory others;
    EXPECT_EQ(initialise(others.root()), "");
    EXPECT_EQ(stderr_of([&] { outputs.release(); }), "");
}

TEST_F(OutputsCopy, ReleasingItLeavesTheRecordAsItWasAndCallsNoPlugin) {
    Fake_plugin plugin = with_outputs();
    One_plugin one(plugin.list().item("x").list().a("a").b("b").binary("c"));
    vexaoc_outputs record;
    EXPECT_TRUE(Request().compile(&record, 0));
    one.take_calls();
    vexaoc_outputs before;
    std::memcpy(&before, &record, sizeof record);
    EXPECT_EQ(stderr_of([&] { vexacm_release_compiler_outputs(&record); }), "");
    EXPECT_EQ(std::memcmp(&before, &record, sizeof record), 0);
    EXPECT_EQ(one.take_calls(), "");
}

TEST_F(OutputsCopy, ARecordThatIsZeroedMayBeReleased) {
    EXPECT_EQ(initialise(), "");
    vexaoc_outputs record = {};
    EXPECT_EQ(stderr_of([&] {
                  vexacm_release_compiler_outputs(&record);
                  vexacm_release_compiler_outputs(&record);
              }),
              "");
}

} // namespace
