// SPDX-License-Identifier: MIT
// `vexacm compile` with a cache, which it shares with `vexacm batch`.
#include "cache_test.hpp"

#include <filesystem>

namespace {

namespace fs = std::filesystem;

class CacheCompile : public Cache_test {
protected:
    CacheCompile() {
        on("SAY", "print out%0a", "err");
        add_source("a.frag", "BINARY");
        add_source("b.frag", "ERROR");
        add_source("c.frag", "SAY");
        add_source("d.frag");
    }

    Process_result compile(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "compile");
        return vexacm(arguments);
    }

    /// Compiles, and so does not again.
    void expect_kept(std::vector<std::string> arguments) {
        const auto expected = compile(arguments);
        take_requests();
        arguments.insert(arguments.end(), {"--cache", "cache"});
        expect_same(compile(arguments), expected);
        EXPECT_NE(take_requests(), "");
        expect_same(compile(arguments), expected);
        EXPECT_EQ(take_requests(), "");
    }
};

TEST_F(CacheCompile, EverythingThenTheSameBytesAndNotCompiled) {
    expect_kept({"a.frag"});
    expect_kept({"a.frag", "-o", "-"});
    expect_kept({"b.frag", "--core", "Vexa-K420"});
    expect_kept({"b.frag", "--core", "Vexa-K420", "-D", "A", "--json"});
    expect_kept({"d.frag", "-o", "d.bin"});
    EXPECT_FALSE(fs::exists(path("d.bin")));
}

TEST_F(CacheCompile, BinaryFileThenWrittenFromTheCacheToo) {
    for (int i = 0; i < 2; ++i) {
        compile({"a.frag", "-o", "a.bin", "--cache", "cache"});
        EXPECT_EQ(read_file(path("a.bin")), std::string("\x00\x01\n\xff", 4));
        fs::remove(path("a.bin"));
    }
    EXPECT_EQ(entries().size(), 1U);
}

TEST_F(CacheCompile, PluginPrintsThenOnStandardErrorBothTimes) {
    const std::string shown = "compiler: Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0 openglessl\n";
    for (int i = 0; i < 2; ++i)
        expect(compile({"c.frag", "--cache", "cache"}), 0, shown, "err\nout\n");
    take_requests();
    EXPECT_EQ(brief(cached({"c.frag", "--core", "Vexa-K580"}).out),
              line("c.frag", "K580", "compiled", " <err\nout\n>"));
    EXPECT_EQ(take_requests(), "");
}

TEST_F(CacheCompile, RequestIsRefusedThenItIsToldAsWithoutACache) {
    add_source("e.frag", "FAIL");
    const auto expected = compile({"e.frag", "--core", "Vexa-K420"});
    expect_same(compile({"e.frag", "--core", "Vexa-K420", "--cache", "cache"}), expected);
    EXPECT_EQ(expected.status, 4);
    // The library's own words.
    const auto unsupported = compile({"a.frag", "--prerotate", "--core", "Vexa-K420"});
    EXPECT_NE(unsupported.err.find("prerotate"), std::string::npos);
    expect_same(compile({"a.frag", "--prerotate", "--core", "Vexa-K420", "--cache", "cache"}),
                unsupported);
    EXPECT_EQ(entries(), std::vector<std::string>{});
}

TEST_F(CacheCompile, BatchBeforeThenNotCompiled) {
    ordered({"a.frag", "b.frag", "--outputs", "out", "--cache", "cache"});
    take_requests();
    compile({"a.frag", "-o", "a.bin", "--cache", "cache"});
    compile({"b.frag", "-o", "b.bin", "--core", "Vexa-K420", "--cache", "cache"});
    EXPECT_EQ(take_requests(), "");
    EXPECT_EQ(read_file(path("a.bin")), std::string("\x00\x01\n\xff", 4));
}

TEST_F(CacheCompile, SeveralFilesThenTakenFromItToo) {
    const std::vector<std::string> arguments{"compile", "a.frag", "b.frag", "--all", "--json"};
    const auto expected = vexacm(arguments);
    cached({"a.frag", "b.frag"});
    take_requests();
    expect_same(vexacm({"compile", "a.frag", "b.frag", "--all", "--json", "--cache", "cache"}),
                expected);
    EXPECT_EQ(take_requests(), "");
}

TEST_F(CacheCompile, StandardInputThenKeptToo) {
    EXPECT_EQ(vexacm({"compile", "-", "--stage", "fragment", "--cache", "cache"}, "BINARY").status,
              0);
    take_requests();
    compile({"a.frag", "--cache", "cache"});
    EXPECT_EQ(take_requests(), "");
}

} // namespace
