// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

namespace {

using ListCommand = Tool_test;

const std::string HEADINGS =
    "ID  driver                 core       revision     API         version  binary  prerotate\n";
const std::string KERNELS =
    "0   Vexa-K300_r5p0-06rel0  Vexa-K580  r0p0_00rel0  opencl      200      yes     no\n";
const std::string K580 =
    "1   Vexa-K300_r5p0-06rel0  Vexa-K580  r0p0_00rel0  openglessl  320      yes     yes\n";
const std::string K460 =
    "2   Vexa-K300_r5p0-06rel0  Vexa-K460  r0p1_00rel0  openglessl  320      yes     yes\n";
const std::string K420 =
    "3   Vexa-K300_r1p0-00rel0  Vexa-K420  r2p0_02rel1  openglessl  300      no      no\n";

std::string none(std::string_view filters, std::string_view left) {
    return "vexacm: no compiler matches: with " + std::string(filters) + " none is left of " +
           std::string(left) + "\n";
}

TEST_F(ListCommand, WithoutFiltersThenAllCompilersInColumns) {
    expect(vexacm({"list"}), 0, HEADINGS + KERNELS + K580 + K460 + K420, "");
}

TEST_F(ListCommand, DriverThenOnlyThatOne) {
    // The columns are as wide as what stands in them.
    expect(vexacm({"list", "--driver", "Vexa-K300_r1p0-00rel0"}), 0, HEADINGS + K420, "");
    expect(vexacm({"list", "--driver", "Vexa-K300"}), 3, "",
           none("--driver 'Vexa-K300'", "Vexa-K300_r5p0-06rel0, Vexa-K300_r1p0-00rel0"));
}

TEST_F(ListCommand, CoreThenOnlyThatOne) {
    expect(vexacm({"list", "--core=Vexa-K460"}), 0, HEADINGS + K460, "");
    expect(vexacm({"list", "--core", "k46x"}), 3, "",
           none("--core 'k46x'", "Vexa-K580, Vexa-K460, Vexa-K420"));
}

TEST_F(ListCommand, RevisionThenOnlyThatOne) {
    expect(vexacm({"list", "--revision", "r2p0_02rel1"}), 0, HEADINGS + K420, "");
    expect(vexacm({"list", "--revision", "r2p0"}), 3, "",
           none("--revision 'r2p0'", "r0p0_00rel0, r0p1_00rel0, r2p0_02rel1"));
}

TEST_F(ListCommand, ApiThenOnlyItsCompilers) {
    expect(vexacm({"list", "--api", "openglessl"}), 0, HEADINGS + K580 + K460 + K420, "");
    expect(vexacm({"list", "--api", "vulkan"}), 2, "",
           usage_error("--api: vulkan not in {openglessl,opencl}"));
}

TEST_F(ListCommand, BinaryOutputThenThoseWithOrWithout) {
    expect(vexacm({"list", "--binary-output", "true"}), 0, HEADINGS + KERNELS + K580 + K460, "");
    expect(vexacm({"list", "--binary-output", "false"}), 0, HEADINGS + K420, "");
    expect(vexacm({"list", "--binary-output", "yes"}), 2, "",
           usage_error("--binary-output: yes not in {true,false}"));
}

TEST_F(ListCommand, MinVersionThenThoseAndNewer) {
    expect(vexacm({"list", "--min-version", "300"}), 0, HEADINGS + K580 + K460 + K420, "");
    expect(vexacm({"list", "--min-version", "301"}), 0, HEADINGS + K580 + K460, "");
    expect(vexacm({"list", "--min-version", "4294967295"}), 3, "",
           none("--min-version 4294967295", "200, 320, 300"));
}

TEST_F(ListCommand, MinVersionWithLeadingNoughtThenStillDecimal) {
    expect(vexacm({"list", "--min-version", "0320"}), 0, HEADINGS + K580 + K460, "");
}

TEST_F(ListCommand, MinVersionThatIsNoNumberThenWrongUse) {
    for (const std::string value : {"3.1", "", "-1", "+1", "0x136", " 310", "4294967296"})
        expect(vexacm({"list", "--min-version=" + value}), 2, "",
               usage_error("--min-version: '" + value + "' is no number, or too large a one"));
}

TEST_F(ListCommand, SeveralFiltersThenAllMustPass) {
    expect(vexacm({"list", "--core", "Vexa-K580", "--api", "opencl", "--min-version", "200"}), 0,
           "ID  driver                 core       revision     API     version  binary  prerotate\n"
           "0   Vexa-K300_r5p0-06rel0  Vexa-K580  r0p0_00rel0  opencl  200      yes     no\n",
           "");
    expect(vexacm({"list", "--core", "Vexa-K460", "--api", "opencl"}), 3, "",
           none("--api 'opencl' --core 'Vexa-K460'", "Vexa-K580"));
}

TEST_F(ListCommand, EmptyFilterThenItIsStillAFilter) {
    expect(vexacm({"list", "--revision", ""}), 3, "",
           none("--revision ''", "r0p0_00rel0, r0p1_00rel0, r2p0_02rel1"));
    expect(vexacm({"list", "--revision=", "--json"}), 3, "[]\n",
           none("--revision ''", "r0p0_00rel0, r0p1_00rel0, r2p0_02rel1"));
}

TEST_F(ListCommand, JsonThenArrayOfObjects) {
    expect(vexacm({"list", "--json", "--core", "Vexa-K580"}), 0, R"([
  {
    "id": 0,
    "driver": "Vexa-K300_r5p0-06rel0",
    "core": "Vexa-K580",
    "revision": "r0p0_00rel0",
    "api": "opencl",
    "version": 200,
    "binary_output": true,
    "prerotate": false
  },
  {
    "id": 1,
    "driver": "Vexa-K300_r5p0-06rel0",
    "core": "Vexa-K580",
    "revision": "r0p0_00rel0",
    "api": "openglessl",
    "version": 320,
    "binary_output": true,
    "prerotate": true
  }
]
)",
           "");
}

TEST_F(ListCommand, JsonWithoutMatchThenEmptyArray) {
    expect(vexacm({"list", "--json", "--core", "none"}), 3, "[]\n",
           none("--core 'none'", "Vexa-K580, Vexa-K460, Vexa-K420"));
}

// Two letters of two bytes, a line break and a byte that is no UTF-8.
TEST_F(ListCommand, StrangeTextThenColumnsHold) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("\u00e9\u00e9", "a\nb").core("o\xff", "\x1b[1m");
    plugin.pair("openglessl_extensions", "");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    const Process_result listed = vexacm({"list", "--driver", "Vexa-K300_r9p0-00rel0"});
    // Cores without numbers come in no defined order.
    EXPECT_EQ(listed.status, 0);
    EXPECT_NE(listed.out.find("  \u00e9\u00e9    a b       openglessl  0        no      no\n"),
              std::string::npos)
        << listed.out;
    EXPECT_NE(listed.out.find("  o\xff     [1m      openglessl  0        no      no\n"),
              std::string::npos)
        << listed.out;
}

TEST_F(ListCommand, JsonWithBytesThatAreNoUtf8ThenReplaced) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("o\xff", "a\nb").pair("openglessl_extensions", "");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(vexacm({"list", "--json", "--driver", "Vexa-K300_r9p0-00rel0"}), 0,
           R"([
  {
    "id": 0,
    "driver": "Vexa-K300_r9p0-00rel0",
    "core": "o)"
           "\ufffd"
           R"(",
    "revision": "a\nb",
    "api": "openglessl",
    "version": 0,
    "binary_output": false,
    "prerotate": false
  }
]
)",
           "");
}

TEST_F(ListCommand, ExtraArgumentThenWrongUse) {
    expect(vexacm({"list", "info"}), 2, "", usage_error("not expected: info"));
}

} // namespace
