// SPDX-License-Identifier: MIT
// Which folders become caches, and those that cannot be written to.
#include "cache_test.hpp"

#include <algorithm>
#include <filesystem>

#include <sys/mount.h>

namespace {

namespace fs = std::filesystem;

class CacheFolder : public Cache_test {
protected:
    CacheFolder() {
        add_source("a.frag");
        add_source("b.frag", "ERROR");
        expected = ordered(arguments);
        take_requests();
    }

    Process_result in(const std::string& folder) const {
        std::vector<std::string> all = arguments;
        all.insert(all.end(), {"--cache", folder});
        return ordered(all);
    }

    const std::vector<std::string> arguments{"a.frag", "b.frag"};
    Process_result expected;
};

TEST_F(CacheFolder, MissingThenMadeAndMarked) {
    expect_same(in("some/where/cache"), expected);
    EXPECT_EQ(read_file(path("some/where/cache/CACHEDIR.TAG")).substr(0, 43),
              "Signature: 8a477f597d28d172789f06886806bc55");
    take_requests();
    expect_same(in(path("some/../some/where/cache/")), expected);
    EXPECT_EQ(take_requests(), "");
}

TEST_F(CacheFolder, EmptyOrKilledWhileItWasMarkedThenMarked) {
    fs::create_directory(path("cache"));
    write_file(path("cache/new-0123456789abcdef"), "Sign");
    expect_same(cached(arguments), expected);
    EXPECT_TRUE(fs::exists(path("cache/CACHEDIR.TAG")));
}

TEST_F(CacheFolder, SomethingElseThenRefusedAndNotTouched) {
    const std::string reason = "it is not empty and no cache";
    fs::create_directories(path("ab"));
    write_file(path("ab/0123456789abcdef0123456789abcd"), "not ours");
    fs::create_directory(path("other"));
    write_file(path("other/CACHEDIR.TAG"), "Signature: 8a477f597d28d172789f06886806bc55\n");
    for (const std::string folder : {".", "other"}) {
        const std::string before = snapshot(folder);
        expect(in(folder), 5, "",
               "vexacm: cannot use the cache in '" + folder + "': " + reason + "\n");
        EXPECT_EQ(snapshot(folder), before);
    }
    EXPECT_EQ(take_requests(), "");
}

TEST_F(CacheFolder, NoFolderThenFailed) {
    for (const std::string folder : {"a.frag", "a.frag/cache"})
        expect(in(folder), 5, "",
               "vexacm: cannot use the cache in '" + folder + "': Not a directory\n");
    expect(in(""), 2, "", "vexacm: --cache takes a directory\n");
    expect(vexacm({"compile", "a.frag", "--cache="}), 2, "", "vexacm: --cache takes a directory\n");
    fs::create_symlink("loop", path("loop"));
    expect(in("loop"), 5, "",
           "vexacm: cannot use the cache in 'loop': Too many levels of symbolic links\n");
    const std::string name(300, 'x');
    expect(in(name), 5, "", "vexacm: cannot use the cache in '" + name + "': File name too long\n");
}

TEST_F(CacheFolder, LinkToACacheThenUsed) {
    cached(arguments);
    fs::create_symlink("cache", path("link"));
    take_requests();
    expect_same(in("link"), expected);
    EXPECT_EQ(take_requests(), "");
}

TEST_F(CacheFolder, ClosedAndMovedMeanwhileThenStoredAllTheSame) {
    on("CLOSE", "close");
    add_source("c.frag", "CLOSE");
    in("cache");
    const auto result = batch({"c.frag", "a.frag", "-j", "1", "--cache", "cache"});
    EXPECT_NE(result.out.find("\ncache: 3 of 6 jobs\n"), std::string::npos) << result.out;
}

/// A disk of its own, in the folder "disk".
class CacheDisk : public CacheFolder {
protected:
    void mount(const char* options) {
        fs::create_directory(disk);
        if (::mount("none", disk.c_str(), "tmpfs", 0, options) != 0)
            GTEST_SKIP() << "no file system can be mounted here";
        is_mounted = true;
    }
    void make_read_only() const {
        EXPECT_EQ(::mount("none", disk.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    }
    void TearDown() override {
        if (is_mounted)
            ::umount2(disk.c_str(), MNT_DETACH);
    }
    static std::string takes_none(const std::string& folder, const std::string& reason) {
        return "vexacm: the cache in '" + folder + "' takes no entries: " + reason + "\n";
    }

    const std::string disk = path("disk");
    bool is_mounted = false;
};

TEST_F(CacheDisk, ReadOnlyThenHitsAndALineForAllThatIsNotKept) {
    mount("size=1m");
    if (!is_mounted)
        return;
    std::vector<std::string> first{"a.frag", "--cache", "disk/cache"};
    ordered(first);
    make_read_only();
    const std::string before = snapshot("disk");
    take_requests();
    expect(ordered(first), 0, ordered({"a.frag"}).out, "");
    take_requests();
    const auto result = in("disk/cache");
    expect(result, expected.status, expected.out,
           takes_none("disk/cache", "Read-only file system"));
    EXPECT_EQ(snapshot("disk"), before);
    const std::string requests = take_requests();
    EXPECT_EQ(std::count(requests.begin(), requests.end(), '\n'), 3);
    EXPECT_EQ(vexacm({"compile", "b.frag", "--cache", "disk/cache"}).err,
              takes_none("disk/cache", "Read-only file system") +
                  vexacm({"compile", "b.frag"}).err);
}

TEST_F(CacheDisk, ReadOnlyAndEmptyThenALineAndMissingThenFailed) {
    mount("size=1m");
    if (!is_mounted)
        return;
    make_read_only();
    expect(in("disk"), expected.status, expected.out, takes_none("disk", "Read-only file system"));
    expect(in("disk/cache"), 5, "",
           "vexacm: cannot use the cache in 'disk/cache': Read-only file system\n");
}

// An entry in a folder without a mark would make it one that is no cache.
TEST_F(CacheDisk, ReadOnlyAndEmptyWhenItWasOpenedThenNothingIsStoredLater) {
    mount("size=1m");
    if (!is_mounted)
        return;
    make_read_only();
    on("WAIT", "hang");
    add_source("c.frag", "WAIT");
    const std::string log = plugins.root() + "/../log";
    const auto result = ordered(
        {"c.frag", "a.frag", "--core", "Vexa-K460", "-j", "1", "--timeout", "3", "--cache", "disk"},
        "(until grep -qs WAIT '" + log + "'; do sleep 0.02; done; mount -o remount,rw '" + disk +
            "') >remounted 2>&1 &");
    EXPECT_EQ(read_file(path("remounted")), "");
    EXPECT_EQ(result.err, takes_none("disk", "Read-only file system"));
    EXPECT_TRUE(fs::is_empty(disk));
    EXPECT_EQ(in("disk").err, "");
}

TEST_F(CacheDisk, FullThenALineAndWhatIsThereIsWhole) {
    mount("size=512k");
    if (!is_mounted)
        return;
    const std::string binary(100000, 'x');
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k58x", "r0p0_00rel0").pair("openglessl_version", "320").binary_output(1);
    plugin.pair("openglessl_extensions", "GL_ONE");
    plugin.outputs("").binary(binary);
    plugins.add_driver("openglessl", "Vexa-K300_r6p0-00rel0", plugin);
    std::vector<std::string> all{"--driver", "Vexa-K300_r6p0-00rel0", "--outputs", "out"};
    for (int i = 0; i < 20; ++i) {
        const std::string name = "s" + std::to_string(i) + ".frag";
        add_source(name, "source " + std::to_string(i));
        all.push_back(name);
    }
    const auto without = ordered(all);
    all.insert(all.end(), {"--cache", "disk/cache"});
    take_requests();
    for (int i = 0; i < 2; ++i)
        expect(ordered(all), 0, without.out, takes_none("disk/cache", "No space left on device"));
    const std::string requests = take_requests();
    const auto compiled = std::count(requests.begin(), requests.end(), '\n');
    EXPECT_GT(compiled, 20);
    EXPECT_LT(compiled, 40);
    for (const auto& entry : fs::recursive_directory_iterator(disk))
        EXPECT_NE(entry.path().filename().string().substr(0, 4), "new-");
}

} // namespace
