// SPDX-License-Identifier: MIT
// A plug-in that does something to the process that opens it is named.
#include "batch_test.hpp"

#include <filesystem>

namespace {

class HostileCatalogue : public Batch_test {
protected:
    HostileCatalogue() { add_source("a.frag"); }

    std::string cannot_be_used(const std::string& reason) const {
        return "vexacm: the plug-ins in '" + plugins.root() + "' cannot be used: " + reason + "\n";
    }

    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
};

TEST_F(HostileCatalogue, CrashWhileItIsOpenedThenNamed) {
    plugin.line("on-load signal 6").say_on_load("opened");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(batch({"a.frag"}), 4, "",
           "opened\n" + cannot_be_used("openglessl/libVexa-K300_r9p0-00rel0.so: killed by "
                                       "signal 6 (Aborted)"));
}

TEST_F(HostileCatalogue, ExitWhileItIsOpenedThenNamed) {
    plugin.line("on-load exit 0");
    plugins.add_driver("opencl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(batch({"a.frag"}), 4, "",
           cannot_be_used("opencl/libVexa-K300_r9p0-00rel0.so: exit status 0"));
}

TEST_F(HostileCatalogue, HangWhileItIsOpenedThenNamed) {
    plugin.line("on-load hang");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(batch({"--timeout", "2", "a.frag"}), 4, "",
           cannot_be_used("openglessl/libVexa-K300_r9p0-00rel0.so: not open within 2 seconds"));
}

TEST_F(HostileCatalogue, CrashWhenItIsAskedThenNamed) {
    plugin.act("signal 6");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(batch({"a.frag"}), 4, "",
           cannot_be_used("openglessl/libVexa-K300_r9p0-00rel0.so: killed by signal 6 (Aborted)"));
}

TEST_F(HostileCatalogue, MemoryWithoutEndThenNamed) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "AddressSanitizer takes more memory than any limit allows";
#endif
    const std::string more = "openglessl/libVexa-K300_r9p0-00rel0.so: more than 64 MB of memory";
    plugin.line("on-load allocate");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(batch({"--memory-limit", "64", "a.frag"}), 4, "", cannot_be_used(more));
    plugin = Fake_plugin::of_type("openglessl");
    plugin.act("allocate");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(batch({"--memory-limit", "64", "a.frag"}), 4, "", cannot_be_used(more));
}

TEST_F(HostileCatalogue, CrashWithMemoryLeftThenNotForLackOfIt) {
    plugin.line("on-load signal 6");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(batch({"--memory-limit", "64", "a.frag"}), 4, "",
           cannot_be_used("openglessl/libVexa-K300_r9p0-00rel0.so: killed by signal 6 (Aborted)"));
}

TEST_F(HostileCatalogue, TwoThenBothAreNamed) {
    plugin.line("on-load exit 7");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    plugins.add_driver("openglessl", "Vexa-K300_r8p0-00rel0", plugin);
    expect(batch({"a.frag"}), 4, "",
           cannot_be_used("openglessl/libVexa-K300_r8p0-00rel0.so: exit status 7; "
                          "openglessl/libVexa-K300_r9p0-00rel0.so: exit status 7"));
}

TEST_F(HostileCatalogue, ExceptionThenToldAsByTheOthers) {
    plugin.core("k46x", "r0p0_00rel0").pair("openglessl_version", "many");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(batch({"a.frag"}), 4, "", cannot_be_used("stoi"));
}

// What it says is told once, and not among the results.
TEST_F(HostileCatalogue, PrintsThenOnStandardErrorOnce) {
    plugin.core("k46x", "r0p0_00rel0").pair("openglessl_version", "320");
    plugin.line("on-load print loaded");
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    const auto result = ordered({"a.frag", "--driver", "Vexa-K300_r9p0-00rel0"});
    EXPECT_EQ(brief(result.out), line("a.frag", "K460", "compiled"));
    EXPECT_EQ(result.err, "loaded");
    EXPECT_EQ(result.status, 0);
}

} // namespace
