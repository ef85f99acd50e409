// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

namespace {

using NoMatch = Tool_test;

std::string none(std::string_view reason) {
    return "vexacm: no compiler matches: " + std::string(reason) + "\n";
}

TEST_F(NoMatch, FiltersThatContradictThenTheFirstThatLeavesNothing) {
    expect(vexacm({"list", "--core", "Vexa-K420", "--binary-output", "true"}), 3, "",
           none("with --core 'Vexa-K420' --binary-output 'true' none is left of false"));
    expect(vexacm({"list", "--core", "Vexa-K460", "--binary-output", "false"}), 3, "",
           none("with --core 'Vexa-K460' --binary-output 'false' none is left of true"));
    expect(vexacm({"list", "--revision", "x", "--core", "y", "--min-version", "1000"}), 3, "",
           none("with --core 'y' none is left of Vexa-K580, Vexa-K460, Vexa-K420"));
}

TEST_F(NoMatch, NoCompilerForTheStageThenItsApi) {
    plugins.remove("opencl");
    add_source("a.cl");
    expect(vexacm({"compile", "a.cl", "--kernel", "k"}), 3, "",
           "Unable to open library directory " + plugins.path("opencl") + "\n" +
               none("with --api 'opencl' none is left of openglessl"));
}

TEST_F(NoMatch, ManyValuesThenTheFirstEight) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    for (const char* revision : {"r1p0", "r2p0", "r3p0", "r4p0", "r5p0", "r6p0"})
        plugin.core("k58x", revision);
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(vexacm({"list", "--revision", "x"}), 3, "",
           none("with --revision 'x' none is left of r6p0, r5p0, r4p0, r3p0, r2p0, r1p0, "
                "r0p0_00rel0, r0p1_00rel0, ..."));
}

TEST_F(NoMatch, TextsWithControlCharactersThenOneLine) {
    expect(vexacm({"list", "--core", "a\nb\x1b"}), 3, "",
           none("with --core 'a b ' none is left of Vexa-K580, Vexa-K460, Vexa-K420"));
}

TEST_F(NoMatch, NoPluginThenTheDirectory) {
    plugins.remove("opencl");
    plugins.remove("openglessl");
    const std::string lines = "Unable to open library directory " + plugins.path("openglessl") +
                              "\nUnable to open library directory " + plugins.path("opencl") + "\n";
    const std::string reason =
        "'" + plugins.root() + "' has no usable plug-in in openglessl or opencl";
    expect(vexacm({"list", "--core", "x"}), 3, "", lines + none(reason));
    expect(vexacm({"info", "0"}), 2, "",
           lines + "vexacm: there is no compiler 0: " + reason + "\n");
}

} // namespace
