// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

namespace {

/// Compiles with a plug-in that gives just what the test says.
class CompileReport : public Tool_test {
protected:
    CompileReport() {
        add_source("a.frag");
        plugin.core("k58x", "r0p0").pair("openglessl_extensions", "").binary_output(1).outputs();
    }

    Process_result compile(const std::vector<std::string>& options = {}) {
        plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
        std::vector<std::string> arguments = {"compile", "a.frag"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return vexacm(arguments);
    }

    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    const std::string compiler = "compiler: Vexa-K300_r9p0-00rel0 Vexa-K580 r0p0 openglessl\n";
    const std::string null_text = "Compiler Manager Error: NULL inputs to string_copy.\n";
    const std::string json_compiler = R"({
  "compiler": {
    "id": 0,
    "driver": "Vexa-K300_r9p0-00rel0",
    "core": "Vexa-K580",
    "revision": "r0p0",
    "api": "openglessl",
    "version": 0,
    "binary_output": true,
    "prerotate": false
  },
)";
};

TEST_F(CompileReport, NothingThenOnlyTheCompiler) {
    expect(compile(), 0, compiler, "");
    expect(
        compile({"--json"}), 0,
        json_compiler +
            "  \"errors\": [],\n  \"warnings\": [],\n  \"tables\": [],\n  \"binary_size\": 0\n}\n",
        "");
}

TEST_F(CompileReport, TablesThenColumnsAligned) {
    plugin.list().item("").item("arithmetic").item("load/store");
    plugin.list().item("cycles").item("12").item("3.5");
    plugin.list().item("bound");
    plugin.list();
    expect(compile(), 0,
           compiler + "        arithmetic  load/store\n"
                      "cycles  12          3.5\n"
                      "bound\n"
                      "\n",
           "");
}

TEST_F(CompileReport, TableWithOddTextThenLinesHold) {
    plugin.list().item("one\ntwo\r").item(nullptr).item("end\t");
    expect(compile(), 0, compiler + "one two     end\n", null_text);
}

TEST_F(CompileReport, NullTextsThenSkipped) {
    plugin.a(nullptr).a("error").b(nullptr).b("warning");
    expect(compile(), 1, compiler, null_text + null_text + "a.frag: error\na.frag: warning\n");
}

TEST_F(CompileReport, NullArraysThenEmpty) {
    plugin.line("num-a 2").line("null-a").line("num-b 2").line("null-b");
    plugin.line("binary-size 2").line("null-binary").line("num-lists 2").line("null-lists");
    expect(compile(), 0, compiler, "");
}

TEST_F(CompileReport, OnlyANullErrorThenStillAnError) {
    plugin.a(nullptr);
    expect(compile(), 1, compiler, null_text);
}

TEST_F(CompileReport, DiagnosticsOfSeveralLinesThenPrintedAsTheyAre) {
    plugin.a("one\ntwo\n").a("\n").a("").b("\xff\x1b[0m");
    expect(compile(), 1, compiler, "a.frag: one\ntwo\na.frag: \na.frag: \na.frag: \xff\x1b[0m\n");
}

TEST_F(CompileReport, JsonThenOneObjectAndNothingElse) {
    plugin.a("bad\n").a(nullptr).b("odd \xff").list().item("a").item(nullptr).list().binary("xyz");
    expect(compile({"--json"}), 1,
           json_compiler + R"(  "errors": [
    "bad\n"
  ],
  "warnings": [
    "odd )"
                           "\ufffd"
                           R"("
  ],
  "tables": [
    [
      "a",
      ""
    ],
    []
  ],
  "binary_size": 3
}
)",
           null_text + null_text);
}

} // namespace
