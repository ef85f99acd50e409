// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

#include <filesystem>

namespace {

namespace fs = std::filesystem;

class PluginDirectory : public Tool_test {
protected:
    /// A copy of the tool that lies in a prefix of its own.
    std::string installed() const {
        fs::create_directories(path("prefix/bin"));
        fs::copy_file(VEXACM_TOOL, path("prefix/bin/vexacm"));
        return path("prefix/bin/vexacm");
    }

    void link_plugins(const std::string& place) const {
        fs::create_directories(fs::path(path(place)).parent_path());
        fs::create_directory_symlink(plugins.root(), path(place));
    }

    const std::string whole_list = vexacm({"list"}).out;
};

TEST_F(PluginDirectory, NamedBeforeOrAfterTheCommandThenUsed) {
    expect(run_here({VEXACM_TOOL, "--plugins", plugins.root(), "list"}), 0, whole_list, "");
    expect(run_here({VEXACM_TOOL, "list", "--plugins", plugins.root()}), 0, whole_list, "");
    expect(run_here({VEXACM_TOOL, "list", "--plugins=" + plugins.root() + "/"}), 0, whole_list, "");
}

TEST_F(PluginDirectory, NamedTwiceThenWrongUse) {
    expect(vexacm({"list", "--plugins", plugins.root()}), 2, "",
           usage_error("--plugins: At Most 1 required but received 2"));
}

TEST_F(PluginDirectory, NamedButMissingThenWrongUse) {
    expect(run_here({VEXACM_TOOL, "list", "--plugins", "gone"}), 2, "",
           "vexacm: plug-in directory 'gone': No such file or directory\n");
    expect(run_here({VEXACM_TOOL, "list", "--plugins", ""}), 2, "",
           "vexacm: plug-in directory '': No such file or directory\n");
}

TEST_F(PluginDirectory, NamedButAFileThenWrongUse) {
    add_source("a.frag");
    expect(run_here({VEXACM_TOOL, "list", "--plugins", "a.frag"}), 2, "",
           "vexacm: plug-in directory 'a.frag': Not a directory\n");
}

TEST_F(PluginDirectory, NotNamedThenTheOneBesideTheTool) {
    const std::string tool = installed();
    link_plugins("prefix/bin/plugins");
    expect(run_here({tool, "list"}), 0, whole_list, "");
}

TEST_F(PluginDirectory, NotNamedThenTheInstalledOne) {
    const std::string tool = installed();
    link_plugins("prefix/" VEXACM_PLUGIN_DIR);
    expect(run_here({tool, "list"}), 0, whole_list, "");
}

TEST_F(PluginDirectory, NotNamedAndMissingThenWhatToDo) {
    const std::string tool = installed();
    const std::string expected = path("prefix/bin/../" VEXACM_PLUGIN_DIR);
    expect(run_here({tool, "list"}), 3, "",
           "Unable to open library directory " + expected + "/openglessl\n" +
               "Unable to open library directory " + expected + "/opencl\n" +
               "vexacm: no compiler matches: there is no directory '" + expected +
               "': name one with --plugins\n");
}

TEST_F(PluginDirectory, InitialisationThrowsThenRefused) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k58x", "r0p0").pair("openglessl_version", "new");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    add_source("a.frag");
    const std::string message =
        "vexacm: the plug-ins in '" + plugins.root() + "' cannot be used: stoi\n";
    expect(vexacm({"list"}), 4, "", message);
    expect(vexacm({"info", "0"}), 4, "", message);
    expect(vexacm({"compile", "a.frag"}), 4, "", message);
}

} // namespace
