// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

namespace {

using InfoCommand = Tool_test;

TEST_F(InfoCommand, IdThenPropertiesAndExtensions) {
    expect(vexacm({"info", "1"}), 0,
           "ID:         1\n"
           "driver:     Vexa-K300_r5p0-06rel0\n"
           "core:       Vexa-K580\n"
           "revision:   r0p0_00rel0\n"
           "API:        openglessl\n"
           "version:    320\n"
           "binary:     yes\n"
           "prerotate:  yes\n"
           "extensions:\n"
           "  GL_ONE\n"
           "  GL_TWO\n",
           "");
}

TEST_F(InfoCommand, JsonThenObject) {
    expect(vexacm({"info", "3", "--json"}), 0, R"({
  "id": 3,
  "driver": "Vexa-K300_r1p0-00rel0",
  "core": "Vexa-K420",
  "revision": "r2p0_02rel1",
  "api": "openglessl",
  "version": 300,
  "binary_output": false,
  "prerotate": false,
  "extensions": [
    "GL_ONE"
  ]
}
)",
           "");
}

TEST_F(InfoCommand, ExtensionsThatAreProbedThenThoseFound) {
    Fake_plugin plugin = Fake_plugin::of_type("opencl");
    plugin.core("k46x", "r9p0").outputs("").a("cl_khr_icd").a("cl_khr_fp16");
    plugins.add_driver("opencl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(vexacm({"info", "0"}), 0,
           "ID:         0\n"
           "driver:     Vexa-K300_r9p0-00rel0\n"
           "core:       Vexa-K460\n"
           "revision:   r9p0\n"
           "API:        opencl\n"
           "version:    0\n"
           "binary:     no\n"
           "prerotate:  no\n"
           "extensions:\n"
           "  cl_khr_icd\n"
           "  cl_khr_fp16\n",
           "");
}

TEST_F(InfoCommand, IdThatIsNotKnownThenWrongUse) {
    expect(vexacm({"info", "4"}), 2, "", "vexacm: there is no compiler 4: IDs run from 0 to 3\n");
    expect(vexacm({"info", "4294967295", "--json"}), 2, "",
           "vexacm: there is no compiler 4294967295: IDs run from 0 to 3\n");
}

TEST_F(InfoCommand, IdThatIsNoNumberThenWrongUse) {
    for (const std::string id : {"x", "-1", "1x", "", "4294967296", "0x1"})
        expect(vexacm({"info", id}), 2, "",
               usage_error("ID: '" + id + "' is no number, or too large a one"));
}

TEST_F(InfoCommand, WithoutIdThenWrongUse) {
    expect(vexacm({"info"}), 2, "", usage_error("ID is required"));
}

TEST_F(InfoCommand, FilterThenWrongUse) {
    expect(vexacm({"info", "1", "--core", "Vexa-K580"}), 2, "",
           usage_error("not expected: --core Vexa-K580"));
}

} // namespace
