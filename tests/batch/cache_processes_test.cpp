// SPDX-License-Identifier: MIT
// Several processes with one cache, and processes that are killed while they store.
#include "cache_test.hpp"

#include "../cache/folder.hpp"

#include <csignal>
#include <filesystem>

#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// Sources whose entries take some time to write.
class CacheProcesses : public Cache_test {
protected:
    CacheProcesses() {
        Fake_plugin plugin = Fake_plugin::of_type("openglessl");
        plugin.core("k58x", "r0p0_00rel0").pair("openglessl_version", "320").binary_output(1);
        plugin.outputs("").b("a warning").binary(std::string(300000, 'x'));
        plugins.add_driver("openglessl", "Vexa-K300_r6p0-00rel0", plugin);
        for (int i = 0; i < 20; ++i) {
            const std::string name = "s" + std::to_string(i) + ".frag";
            add_source(name, "source " + std::to_string(i));
            arguments.push_back(name);
        }
        expected = ordered(arguments);
        take_requests();
    }

    /// The command line of a run, for a shell.
    std::string command() const {
        std::string text = std::string(VEXACM_TOOL) + " --plugins '" + plugins.root() +
                           "' batch --json --ordered --cache cache";
        for (const std::string& argument : arguments)
            text += " " + argument;
        return text;
    }

    std::vector<std::string> arguments{"--driver", "Vexa-K300_r6p0-00rel0", "--outputs", "out"};
    Process_result expected;
};

TEST_F(CacheProcesses, EightWithOneNewCacheThenEachAsAlone) {
    const std::string shell =
        "for i in 1 2 3 4 5 6 7 8; do " + command() + " >result$i 2>error$i & done; wait";
    EXPECT_EQ(run_here({"sh", "-c", shell}).err, "");
    for (const std::string i : {"1", "2", "3", "4", "5", "6", "7", "8"}) {
        EXPECT_EQ(read_file(path("error" + i)), "");
        EXPECT_TRUE(read_file(path("result" + i)) == expected.out) << i;
    }
    take_requests();
    expect_same(cached(arguments), expected);
    EXPECT_EQ(take_requests(), "");
    EXPECT_EQ(cache({"info"}).out, cache_holds(20, 20 * 74));
}

TEST_F(CacheProcesses, EightThatOutgrowItThenEachAsAloneAndTheLimitIsKept) {
    const std::string shell = "for i in 1 2 3 4 5 6 7 8; do " + command() +
                              " --cache-size 1 >result$i 2>error$i & done; wait";
    EXPECT_EQ(run_here({"sh", "-c", shell}).err, "");
    for (const std::string i : {"1", "2", "3", "4", "5", "6", "7", "8"}) {
        EXPECT_EQ(read_file(path("error" + i)), "");
        EXPECT_TRUE(read_file(path("result" + i)) == expected.out) << i;
    }
    take_requests();
    // What one of them stored after the last look of the others.
    EXPECT_LE(entries().size(), 3U + 8U);
}

TEST_F(CacheProcesses, ClearedAllTheTimeThenAsAlone) {
    cached(arguments);
    const std::string clearing = "(while :; do " + std::string(VEXACM_TOOL) +
                                 " cache clear cache; done) >/dev/null 2>&1 & clearing=$!; "
                                 "for i in 1 2 3 4 5; do " +
                                 command() + " >result$i 2>error$i; done; kill $clearing";
    EXPECT_EQ(run_here({"sh", "-c", clearing}).err, "");
    for (const std::string i : {"1", "2", "3", "4", "5"}) {
        EXPECT_EQ(read_file(path("error" + i)), "");
        EXPECT_TRUE(read_file(path("result" + i)) == expected.out) << i;
    }
}

TEST_F(CacheProcesses, KilledInTheMiddleOfAnEntryThenItIsMissingUntilItIsStored) {
    cached(arguments);
    const std::string entry = entries().at(0);
    const std::string whole = read_file(entry);
    fs::remove(entry);
    const pid_t child = ::fork();
    if (child == 0)
        vexacm_tool::put_file(path("cache"), fs::relative(entry, path("cache")), [&](int file) {
            vexacm_tool::write_bytes(file, whole.substr(0, whole.size() / 2));
            return ::raise(SIGKILL);
        });
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_EQ(cache({"info"}).out, cache_holds(19, 19 * 74, 1));
    expect_same(cached(arguments), expected);
    EXPECT_EQ(read_file(entry), whole);
    EXPECT_EQ(cache({"info"}).out, cache_holds(20, 20 * 74, 1));
}

TEST_F(CacheProcesses, KilledAtAnyMomentThenEntriesAreWholeOrMissing) {
    for (int round = 0; round < 40; ++round) {
        const std::string wait = std::to_string(0.01 + 0.002 * round);
        run_here({"sh", "-c", command() + " >/dev/null 2>&1 & sleep " + wait + "; kill -9 $!"});
        if (round % 10 == 9) {
            expect_same(cached(arguments), expected);
            cache({"clear"});
        }
    }
    cached(arguments);
    take_requests();
    expect_same(cached(arguments), expected);
    EXPECT_EQ(take_requests(), "");
    expect(cache({"clear"}), 0, cache_holds(0, 0), "");
    EXPECT_EQ(snapshot("cache").find("new-"), std::string::npos);
}

} // namespace
