// SPDX-License-Identifier: MIT
// What a cache gives back, and when a compile is another one.
#include "cache_test.hpp"

#include "../cache/plugin_digests.hpp"

#include <filesystem>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

using CacheHits = Cache_test;

const char* const REASON = "No such file or directory";

const std::vector<std::string> ALL{"a.frag",   "b.frag", "c.frag", "d.frag", "e.cl",
                                   "--kernel", "one",    "-D",     "FOG"};

std::vector<std::string> with(std::vector<std::string> arguments,
                              const std::vector<std::string>& more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

class CacheHitsOfAll : public Cache_test {
protected:
    CacheHitsOfAll() {
        on("SAY", "print out%0a", "err");
        add_source("a.frag");
        add_source("b.frag", "ERROR");
        add_source("c.frag", "WARN");
        add_source("d.frag", "SAY");
        add_source("e.cl", "BINARY");
    }
};

TEST_F(CacheHitsOfAll, EverythingThenTheSameBytesAndNothingCompiled) {
    const auto expected = ordered(ALL);
    EXPECT_NE(expected.out.find("\"printed\":\"err\\nout\\n\""), std::string::npos);
    EXPECT_EQ(expected.status, 1);
    expect_same(cached(ALL), expected);
    EXPECT_EQ(entries().size(), 13U);
    EXPECT_NE(take_requests(), "");
    expect_same(cached(ALL), expected);
    EXPECT_EQ(take_requests(), "");
}

TEST_F(CacheHitsOfAll, ReportsThenTheSameBytes) {
    const auto reports = [&](const std::string& folder) {
        fs::create_directory(path(folder));
        const std::vector<std::string> files{
            "--sarif", folder + "/sarif", "--junit", folder + "/junit", "--html", folder + "/html"};
        const auto result = batch(with(with(ALL, files), {"--cache", "cache"}));
        return result.out + read_file(path(folder + "/sarif")) +
               read_file(path(folder + "/junit")) + read_file(path(folder + "/html"));
    };
    const std::string first = reports("first");
    const std::string again = reports("again");
    const std::string none = "cache: 0 of 13 jobs\n";
    const std::string all = "cache: 13 of 13 jobs\n";
    const std::size_t at = first.find(none);
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(again, first.substr(0, at) + all + first.substr(at + none.size()));
    const std::string without = batch(ALL).out;
    EXPECT_EQ(first.substr(0, at), without);
}

TEST_F(CacheHits, OneJobThenItsHitIsCounted) {
    add_source("a.frag");
    const std::vector<std::string> arguments{"a.frag", "--core", "Vexa-K580", "--cache", "cache"};
    const std::string first = batch(arguments).out;
    const std::string all = batch(arguments).out;
    EXPECT_EQ(first.substr(first.rfind("1 job:")), "1 job: 1 compiled\ncache: 0 of 1 job\n");
    EXPECT_EQ(all.substr(all.rfind("1 job:")), "1 job: 1 compiled\ncache: 1 of 1 job\n");
}

TEST_F(CacheHits, BinariesThenWrittenFromTheCacheToo) {
    add_source("a.frag", "BINARY");
    add_source("b.frag");
    const auto expected = ordered({"a.frag", "b.frag", "--outputs", "out"});
    EXPECT_EQ(brief(expected.out), lines("a.frag") + lines("b.frag", "no_binary"));
    const std::string written = snapshot("out");
    take_requests();
    for (const bool is_again : {false, true}) {
        fs::remove_all(path("out"));
        expect_same(cached({"a.frag", "b.frag", "--outputs", "out"}), expected);
        EXPECT_EQ(snapshot("out"), written);
        EXPECT_EQ(take_requests().empty(), is_again);
    }
}

TEST_F(CacheHits, WhatDependsOnTheMachineThenNotKept) {
    add_source("a.frag", "FAIL");
    add_source("b.frag", "BOOM");
    add_source("c.frag", "LEAVE");
    const std::vector<std::string> refused{"a.frag", "missing.frag"};
    const std::vector<std::string> lost{"b.frag", "c.frag", "--core", "Vexa-K460"};
    const auto expected = ordered(refused);
    EXPECT_EQ(brief(expected.out), lines("a.frag", "refused") +
                                       line("missing.frag", "K580", "unreadable", REASON) +
                                       line("missing.frag", "K460", "unreadable", REASON) +
                                       line("missing.frag", "K420", "unreadable", REASON));
    expect_same(cached(refused), expected);
    on("BOOM", "signal 11");
    on("LEAVE", "exit 3");
    for (int i = 0; i < 2; ++i)
        expect_same(cached(lost), ordered(lost));
    EXPECT_EQ(entries(), std::vector<std::string>{});
}

TEST_F(CacheHits, CompilerIsGivenUpThenItsResultsInTheCacheAreNotTaken) {
    on("BOOM", "signal 11");
    for (const std::string name : {"a.frag", "b.frag", "c.frag"})
        add_source(name, "BOOM");
    add_source("d.frag");
    cached({"d.frag"});
    const std::vector<std::string> arguments{"a.frag", "b.frag", "c.frag", "d.frag"};
    const auto expected = ordered(arguments);
    EXPECT_NE(expected.out.find("given_up"), std::string::npos);
    expect_same(cached(arguments), expected);
    const std::string out = batch(with(arguments, {"--cache", "cache"})).out;
    EXPECT_NE(out.find("\ncache: 4 of 12 jobs\n"), std::string::npos) << out;
}

/// One source and one compiler; each change of the compile is another one.
class CacheKey : public Cache_test {
protected:
    CacheKey() {
        add_source("a.frag", "BINARY");
        add_source("a.cl", "BINARY");
        first({"a.frag"});
        first({"a.cl", "--kernel", "one"});
    }

    /// Compiles, and so does not again.
    void first(const std::vector<std::string>& arguments, const char* file = __builtin_FILE(),
               int line = __builtin_LINE()) {
        const testing::ScopedTrace trace(file, line, "expected here");
        const std::vector<std::string> all = with(arguments, one);
        const auto expected = ordered(all);
        take_requests();
        expect_same(cached(all), expected);
        EXPECT_NE(take_requests(), "");
        expect_same(cached(all), expected);
        EXPECT_EQ(take_requests(), "");
    }

    void again(const std::vector<std::string>& arguments, const char* file = __builtin_FILE(),
               int line = __builtin_LINE()) {
        const testing::ScopedTrace trace(file, line, "expected here");
        const auto expected = ordered(with(arguments, one));
        take_requests();
        expect_same(cached(with(arguments, one)), expected);
        EXPECT_EQ(take_requests(), "");
    }

    std::vector<std::string> one{"--core", "Vexa-K580"};
};

TEST_F(CacheKey, OptionsThenAnotherCompile) {
    first({"a.frag", "-D", "A"});
    first({"a.frag", "-D", "A=1"});
    first({"a.frag", "-D", "A", "-D", "B"});
    first({"a.frag", "-D", "B", "-D", "A"});
    first({"a.frag", "-D", "AB"});
    first({"a.frag", "--prerotate"});
    first({"a.frag", "--outputs", "out"});
    first({"a.cl", "--kernel", "two"});
    first({"a.cl", "--kernel", "one", "--kernel", "two"});
    first({"a.cl", "--kernel", "two", "--kernel", "one"});
    first({"a.cl", "--kernel", "one", "-D", "two"});
}

TEST_F(CacheKey, StageOrTextThenAnotherCompile) {
    fs::copy_file(path("a.frag"), path("a.vert"));
    first({"a.vert"});
    add_source("a.frag", "ERROR");
    first({"a.frag"});
    add_source("a.frag", "BINARY ");
    first({"a.frag"});
}

TEST_F(CacheKey, NameOrFolderThenTheSame) {
    fs::create_directory(path("folder"));
    fs::copy_file(path("a.frag"), path("folder/b.frag"));
    again({"folder/b.frag"});
    again({path("a.frag")});
    again({"a.frag", "a.frag", "--timeout", "5", "-j", "2"});
}

TEST_F(CacheKey, CompilerThenAnotherCompile) {
    one = {"--core", "Vexa-K460"};
    first({"a.frag"});
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k58x", "r0p1_00rel0").core("k46x", "r0p1_00rel0").core("k46x", "r0p2_00rel0");
    plugin.binary_output(1);
    plugin.pair("openglessl_version", "320").pair("openglessl_extensions", "GL_ONE");
    plugin.outputs("").b("warning");
    plugins.add_driver("openglessl", "Vexa-K300_r6p0-00rel0", plugin);
    const std::vector<std::string> driver{"--driver", "Vexa-K300_r6p0-00rel0"};
    one = with(driver, {"--core", "Vexa-K580"});
    first({"a.frag"});
    one = with(driver, {"--core", "Vexa-K460", "--revision", "r0p1_00rel0"});
    first({"a.frag"});
    one.back() = "r0p2_00rel0";
    first({"a.frag"});
}

TEST_F(CacheKey, PluginIsAnotherFileThenAnotherCompile) {
    const std::string file = plugins.path("openglessl", "libVexa-K300_r5p0-06rel0.so");
    const std::string before = read_file(file);
    write_file(file, before + "x");
    first({"a.frag"});
    again({"a.cl", "--kernel", "one"});
    write_file(file, before);
    again({"a.frag"});
}

TEST_F(CacheKey, PluginIsReplacedWhileItIsOpenThenNotRead) {
    const std::string file = plugins.path("openglessl", "libVexa-K300_r5p0-06rel0.so");
    vexacm_tool::Plugin_digests same(plugins.root());
    vexacm_tool::Plugin_digests other(plugins.root());
    const vexacm::Library library(plugins.root());
    const vexacm::Compiler compiler(1);
    same.read(compiler);
    EXPECT_EQ(same.of(compiler).size(), 32U);
    fs::copy_file(file, file + "-new");
    fs::rename(file + "-new", file);
    other.read(compiler);
    EXPECT_EQ(other.of(compiler), "");
}

// Opened to be read, it would wait for ever.
TEST_F(CacheKey, PipeWithTheNameOfThePluginThenNotRead) {
    const vexacm::Library library(plugins.root());
    const std::string pipe = plugins.path("openglessl", "Vexa-K300_r5p0-06rel0.so");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    vexacm_tool::Plugin_digests digests(plugins.root());
    digests.read(vexacm::Compiler(1));
    EXPECT_EQ(digests.of(vexacm::Compiler(1)).size(), 32U);
}

} // namespace
