// SPDX-License-Identifier: MIT
// How large a cache becomes, and what goes first.
#include "cache_test.hpp"

#include <algorithm>
#include <filesystem>
#include <functional>

#include <sys/mount.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

/// Sources whose entries take 75 of the 256 blocks of a megabyte each.
class CacheLimit : public Cache_test {
protected:
    CacheLimit() {
        Fake_plugin plugin = Fake_plugin::of_type("openglessl");
        plugin.core("k58x", "r0p0_00rel0").pair("openglessl_version", "320").binary_output(1);
        plugin.outputs("SMALL").binary("x");
        plugin.outputs("").binary(std::string(300000, 'x'));
        plugins.add_driver("openglessl", "Vexa-K300_r6p0-00rel0", plugin);
        for (const std::string name : {"a", "b", "c", "d", "e"})
            add_source(name + ".frag", "source " + name);
        add_source("small.frag", "SMALL");
    }

    /// Runs one after the other; those that were compiled.
    std::string compiled(const std::vector<std::string>& names,
                         const std::string& megabytes = "1") {
        std::string found;
        for (const std::string& name : names) {
            take_requests();
            const auto result =
                ordered({name + ".frag", "--driver", "Vexa-K300_r6p0-00rel0", "--outputs", "out",
                         "--cache", "cache", "--cache-size", megabytes});
            EXPECT_EQ(result.err, "");
            EXPECT_EQ(result.status, 0);
            if (!take_requests().empty())
                found += name;
        }
        return found;
    }

    std::string info() const { return cache({"info"}).out; }

    /// When the entry of a source was used, by the clock of the file system.
    void use_at(const std::string& name, const std::string& time) {
        const std::vector<std::string> before = entries();
        compiled({name}, "1000");
        for (const std::string& entry : entries()) {
            if (std::count(before.begin(), before.end(), entry) == 0) {
                EXPECT_EQ(run({"touch", "-d", time, entry}).status, 0);
            }
        }
    }
};

TEST_F(CacheLimit, MoreThanFitsThenThoseNotUsedForLongestGo) {
    EXPECT_EQ(compiled({"a", "b", "c"}), "abc");
    EXPECT_EQ(info(), cache_holds(3, 225 - 3));
    EXPECT_EQ(compiled({"a", "d"}), "d");
    EXPECT_EQ(info(), cache_holds(3, 222));
    EXPECT_EQ(compiled({"d", "a", "c"}), "");
    EXPECT_EQ(compiled({"b"}), "b");
    EXPECT_EQ(compiled({"a", "c", "b"}), "");
    EXPECT_EQ(compiled({"d"}), "d");
}

/// The cache is a disk with little more room than it may take.
class CacheLimitOnADisk : public CacheLimit {
protected:
    void SetUp() override {
        fs::create_directory(path("cache"));
        if (::mount("none", path("cache").c_str(), "tmpfs", 0, "size=3m") != 0)
            GTEST_SKIP() << "no file system can be mounted here";
        is_mounted = true;
    }
    void TearDown() override {
        if (is_mounted)
            ::umount2(path("cache").c_str(), MNT_DETACH);
    }

    bool is_mounted = false;
};

TEST_F(CacheLimitOnADisk, LongRunThenWithinTheLimitAllTheTime) {
    std::vector<std::string> arguments{
        "--driver", "Vexa-K300_r6p0-00rel0", "--outputs", "out", "--cache",
        "cache",    "--cache-size",          "1"};
    for (int i = 0; i < 40; ++i) {
        const std::string name = "s" + std::to_string(i) + ".frag";
        add_source(name, "source " + std::to_string(i));
        arguments.push_back(name);
    }
    const auto result = ordered(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(info(), cache_holds(3, 222));
}

TEST_F(CacheLimit, LargerThanAllThenNotKept) {
    EXPECT_EQ(compiled({"a", "a"}, "0"), "aa");
    EXPECT_EQ(info(), cache_holds(0, 0));
    EXPECT_EQ(compiled({"a", "a"}), "a");
    EXPECT_EQ(compiled({"small"}), "small");
    // Nor does it take the place of others.
    EXPECT_EQ(compiled({"small", "b"}, "0"), "smallb");
    EXPECT_EQ(compiled({"small", "a"}), "");
}

TEST_F(CacheLimit, ClockWasPutForwardAndBackThenHitsAndTheOldestGo) {
    use_at("a", "2099-01-01");
    use_at("b", "1970-01-01");
    use_at("c", "2098-01-01");
    use_at("d", "yesterday");
    EXPECT_EQ(info(), cache_holds(4, 296));
    const std::vector<std::string> all = entries();
    EXPECT_EQ(cache({"trim", "--cache-size", "1"}).out, cache_holds(3, 222));
    EXPECT_EQ(compiled({"a", "b", "d"}, "1000"), "");
    EXPECT_EQ(compiled({"c"}, "1000"), "c");
    EXPECT_EQ(entries(), all);
}

TEST_F(CacheLimit, HitThenUsedNow) {
    use_at("a", "2000-01-01");
    use_at("b", "2001-01-01");
    EXPECT_EQ(compiled({"c", "a"}), "c");
    EXPECT_EQ(compiled({"d"}), "d");
    EXPECT_EQ(compiled({"a", "c", "d"}), "");
}

TEST_F(CacheLimit, CounterIsLostOrWrongThenCountedAnew) {
    const std::string counter = path("cache/blocks");
    compiled({"a", "b", "c"});
    EXPECT_EQ(fs::file_size(counter), 223U);
    for (const auto& spoil : std::vector<std::function<void()>>{
             [&] { fs::remove(counter); }, [&] { write_file(counter, ""); },
             [&] { fs::resize_file(counter, 1000000); },
             [&] {
                 fs::remove(counter);
                 EXPECT_EQ(::mkfifo(counter.c_str(), 0600), 0);
             },
             [&] {
                 fs::remove(counter);
                 fs::create_symlink("/dev/full", counter);
             }}) {
        cache({"clear"});
        compiled({"a", "b", "c"}, "1000");
        spoil();
        EXPECT_EQ(compiled({"d"}), "d");
        EXPECT_EQ(info(), cache_holds(3, 222));
        EXPECT_EQ(fs::file_size(counter), 223U);
    }
}

TEST_F(CacheLimit, LimitIsLoweredThenKeptWhenSomethingIsStored) {
    compiled({"a", "b", "c", "d"}, "2");
    EXPECT_EQ(compiled({"e"}, "1"), "e");
    EXPECT_EQ(info(), cache_holds(3, 222));
}

TEST_F(CacheLimit, LeftUnfinishedThenTrimmedWhenItIsOld) {
    compiled({"a"});
    for (const std::string name : {"new-0123456789abcdef", "new-0123456789abcdee"})
        write_file(path("cache/" + name), "unfinished");
    run({"touch", "-d", "2 hours ago", path("cache/new-0123456789abcdef")});
    EXPECT_EQ(info(), cache_holds(1, 74, 2));
    expect(cache({"trim"}), 0, cache_holds(1, 74, 1), "");
    EXPECT_EQ(unfinished(), std::vector<std::string>{path("cache/new-0123456789abcdee")});
}

/// `vexacm cache`.
using CacheCommand = CacheLimit;

TEST_F(CacheCommand, InfoThenWhatThereIs) {
    compiled({"a", "small"});
    expect(cache({"info"}), 0, cache_holds(2, 75), "");
    expect(cache({"info", "--json"}), 0,
           "{\n  \"entries\": 2,\n  \"bytes\": 307200,\n  \"unfinished\": 0\n}\n", "");
}

TEST_F(CacheCommand, ClearThenNothingButWhatIsNotOurs) {
    compiled({"a", "b"});
    const std::string entry = entries().at(0);
    const std::string folder = fs::path(entry).parent_path();
    fs::create_directory(path("outside"));
    write_file(path("outside/0123456789abcdef0123456789abcd"), "not ours");
    fs::create_directory_symlink(path("outside"), path("cache/zz"));
    for (const std::string link : {"00", "01", "02"}) // one of them is free
        if (!fs::exists(path("cache/" + link)))
            fs::create_directory_symlink(path("outside"), path("cache/" + link));
    const std::vector<std::string> foreign{folder + "/notes",
                                           folder + "/0123",
                                           path("cache/notes"),
                                           path("cache/new-"),
                                           path("cache/0123456789abcdef0123"),
                                           path("outside/0123456789abcdef0123456789abcd")};
    for (const std::string& file : foreign)
        write_file(file, "not ours");
    write_file(path("cache/new-0123456789abcdef"), "ours");
    expect(cache({"clear"}), 0, cache_holds(0, 0), "");
    for (const std::string& file : foreign)
        EXPECT_EQ(read_file(file), "not ours") << file;
    EXPECT_FALSE(fs::exists(entry));
    EXPECT_FALSE(fs::exists(path("cache/new-0123456789abcdef")));
    EXPECT_EQ(compiled({"a"}), "a");
}

TEST_F(CacheCommand, NoCacheThenFailedAndNothingMade) {
    fs::create_directory(path("empty"));
    const std::pair<std::string, std::string> reasons[] = {{"missing", "No such file or directory"},
                                                           {"a.frag", "Not a directory"},
                                                           {".", "it is no cache"},
                                                           {"empty", "it is no cache"}};
    const std::string before = snapshot(".");
    for (const std::string action : {"info", "trim", "clear"})
        for (const auto& [folder, reason] : reasons)
            expect(vexacm({"cache", action, folder}), 5, "",
                   "vexacm: cannot use the cache in '" + folder + "': " + reason + "\n");
    EXPECT_EQ(snapshot("."), before);
}

TEST_F(CacheCommand, WrongUseThenToldSo) {
    compiled({"a"});
    expect(vexacm({"cache"}), 2, "", usage_error("ACTION is required"));
    expect(vexacm({"cache", "info"}), 2, "", usage_error("DIR is required"));
    expect(cache({"clear", "--cache-size", "1"}), 2, "", "vexacm: --cache-size is for trim\n");
    expect(cache({"trim", "--cache-size", "1k"}), 2, "",
           usage_error("--cache-size: '1k' is no number, or too large a one"));
    EXPECT_EQ(info(), cache_holds(1, 74));
}

} // namespace
