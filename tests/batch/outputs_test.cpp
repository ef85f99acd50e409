// SPDX-License-Identifier: MIT
// What is written where: results, binaries, and nothing when that fails.
#include "batch_test.hpp"

#include "outputs.hpp"

#include <algorithm>
#include <filesystem>

#include <sys/mount.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

const std::string BINARY("\x00\x01\n\xff", 4);
const std::string K580 = "out/Vexa-K300_r5p0-06rel0/Vexa-K580/r0p0_00rel0/";
const std::string K460 = "out/Vexa-K300_r5p0-06rel0/Vexa-K460/r0p1_00rel0/";

class BatchOutputs : public Batch_test {
protected:
    /// All files below a folder.
    std::vector<std::string> files_below(const std::string& folder) const {
        std::vector<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(path(folder)))
            if (!entry.is_directory())
                found.push_back(fs::relative(entry.path(), path("")).string());
        std::sort(found.begin(), found.end());
        return found;
    }
};

TEST_F(BatchOutputs, NamesOfTheSameFileThenOnePath) {
    for (const std::string name : {"a/b.frag", "./a/b.frag", "a//b.frag", "././a/./b.frag"})
        EXPECT_EQ(vexacm_tool::downward_path(name), "a/b.frag");
}

TEST_F(BatchOutputs, NamesOfDifferentFilesThenDifferentPathsThatGoDown) {
    const std::pair<std::string, std::string> names[] = {
        {"../b.frag", "%2E%2E/b.frag"},
        {"a/../../b.frag", "a/%2E%2E/%2E%2E/b.frag"},
        {"/a/b.frag", "%2F/a/b.frag"},
        {"%2F/a/b.frag", "%252F/a/b.frag"},
        {"%2E%2E/b.frag", "%252E%252E/b.frag"},
        {"...frag", "...frag"},
        {"a.bin/b.frag", "a%2Ebin/b.frag"},
        {"a~2.frag", "a%7E2.frag"},
        {"", "%"},
        {"a/..", "a/%2E%2E"}};
    for (const auto& [name, path] : names)
        EXPECT_EQ(vexacm_tool::downward_path(name), path);
}

TEST_F(BatchOutputs, CompiledThenTheBinariesAndWhereTheyAre) {
    add_source("a.frag", "BINARY");
    add_source("b.frag", "ERROR");
    add_source("c.frag");
    const auto result = ordered({"a.frag", "b.frag", "c.frag", "--outputs", "out"});
    EXPECT_EQ(brief(result.out), line("a.frag", "K580", "compiled") +
                                     line("a.frag", "K460", "compiled") +
                                     line("a.frag", "K420", "compiled") +
                                     lines("b.frag", "errors") + lines("c.frag", "no_binary"));
    EXPECT_NE(result.out.find("\"binary_size\":4,\"output\":\"" + K580 + "a.frag.bin\","),
              std::string::npos);
    EXPECT_EQ(files_below("out"), (std::vector<std::string>{
                                      "out/Vexa-K300_r1p0-00rel0/Vexa-K420/r2p0_02rel1/a.frag.bin",
                                      K460 + "a.frag.bin", K580 + "a.frag.bin"}));
    EXPECT_EQ(read_file(path(K580 + "a.frag.bin")), BINARY);
    EXPECT_EQ(result.status, 4);
}

TEST_F(BatchOutputs, NamesThatLeadOutOrCollideThenFilesOfTheirOwnInside) {
    fs::create_directories(path("a.frag.bin"));
    fs::create_directories(path("sub"));
    for (const std::string name : {"a.frag", "a.frag.bin/b.frag", "a.frag~2.frag"})
        add_source(name, "BINARY");
    const auto result = ordered({"--outputs", "out", "--core", "Vexa-K580", "a.frag",
                                 "a.frag.bin/b.frag", "a.frag~2.frag", "./a.frag", "sub/../a.frag",
                                 "../folder/a.frag", path("a.frag"), "a.frag"});
    EXPECT_EQ(result.status, 0) << result.out;
    std::vector<std::string> expected;
    for (const std::string name :
         {"%2E%2E/folder/a.frag.bin", "a.frag%2Ebin/b.frag.bin", "a.frag%7E2.frag.bin",
          "a.frag.bin", "a.frag~2.bin", "a.frag~3.bin", "sub/%2E%2E/a.frag.bin"})
        expected.push_back(K580 + name);
    expected.push_back(K580 + vexacm_tool::downward_path(path("a.frag")) + ".bin");
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(files_below("out"), expected);
}

TEST_F(BatchOutputs, CompilersOfOneNameThenFoldersOfTheirOwn) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k58x", "..").core("k58x", "..").core("k58x", "a/b").binary_output(1);
    plugin.pair("openglessl_version", "320").outputs("").binary("x");
    plugins.add_driver("openglessl", "Vexa-K300_r6p0-00rel0", plugin);
    add_source("a.frag");
    EXPECT_EQ(ordered({"a.frag", "--driver", "Vexa-K300_r6p0-00rel0", "--outputs", "out"}).status,
              0);
    const std::string folder = "out/Vexa-K300_r6p0-00rel0/Vexa-K580/";
    EXPECT_EQ(files_below("out"), (std::vector<std::string>{folder + "%2E%2E/a.frag.bin",
                                                            folder + "%2E%2E~2/a.frag.bin",
                                                            folder + "a%2Fb/a.frag.bin"}));
}

TEST_F(BatchOutputs, NoPlaceForABinaryThenItsJobSaysSo) {
    add_source("a.frag", "BINARY");
    add_source("b.frag", "BINARY");
    write_file(path("out"), "in the way");
    const auto result = ordered({"a.frag", "--core", "Vexa-K580", "--outputs", "out"});
    EXPECT_EQ(brief(result.out), line("a.frag", "K580", "unwritable",
                                      "cannot write " + K580 + "a.frag.bin: Not a directory"));
    EXPECT_EQ(result.status, 5);
}

TEST_F(BatchOutputs, WorkerEndsThenNothingUnfinishedStays) {
    on("BOOM", "signal 11");
    fs::create_directories(path(K580));
    add_source("a.frag", "BOOM");
    add_source("b.frag", "BINARY");
    ordered({"-j", "1", "a.frag", "b.frag", "--core", "Vexa-K580", "--outputs", "out"});
    EXPECT_EQ(files_below("out"), std::vector<std::string>{K580 + "b.frag.bin"});
}

/// A disk with room for a little more than half a megabyte.
class SmallDisk : public BatchOutputs {
protected:
    void SetUp() override {
        fs::create_directory(disk);
        if (::mount("none", disk.c_str(), "tmpfs", 0, "size=512k") != 0)
            GTEST_SKIP() << "no file system can be mounted here";
        mounted = true;
    }
    void TearDown() override {
        if (mounted)
            ::umount2(disk.c_str(), MNT_DETACH);
    }

    const std::string disk = path("disk");
    bool mounted = false;
};

TEST_F(SmallDisk, FullThenTheBinariesThatAreThereAreWhole) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k58x", "r0p0_00rel0").pair("openglessl_version", "320").binary_output(1);
    const std::string binary(100000, 'x');
    plugin.outputs("").binary(binary);
    plugins.add_driver("openglessl", "Vexa-K300_r6p0-00rel0", plugin);
    std::vector<std::string> arguments{"--driver", "Vexa-K300_r6p0-00rel0", "--outputs", "disk"};
    for (int i = 0; i < 20; ++i) {
        add_source("s" + std::to_string(i) + ".frag");
        arguments.push_back("s" + std::to_string(i) + ".frag");
    }
    const auto result = ordered(arguments);
    EXPECT_EQ(result.status, 5);
    const std::string out = brief(result.out);
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 20);
    const std::vector<std::string> written = files_below("disk");
    EXPECT_GE(written.size(), 1U);
    for (const std::string& file : written) {
        EXPECT_EQ(read_file(path(file)).size(), binary.size());
        const std::string source = fs::path(file).stem();
        EXPECT_NE(out.find(line(source, "K580", "compiled")), std::string::npos) << source;
    }
    EXPECT_NE(out.find(": No space left on device\n"), std::string::npos) << out;
}

TEST_F(SmallDisk, NoRoomForTheResultsThenFailed) {
    std::vector<std::string> arguments;
    add_source("a.frag");
    std::string list;
    for (int i = 0; i < 3000; ++i)
        list += "a.frag\n";
    write_file(path("list"), list);
    const auto result = batch({"@list"}, "export TMPDIR='" + disk + "'");
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "vexacm: cannot keep the results in '" + disk + "': No space left on device\n");
    EXPECT_EQ(result.status, 5);
}

class BatchStreams : public Batch_test {
protected:
    BatchStreams() { add_source("a.frag"); }
};

TEST_F(BatchStreams, OutputFailsThenFailed) {
    const std::pair<std::string, std::string> failures[] = {
        {"exec >/dev/full", "No space left on device"},
        {"exec >&-", "Bad file descriptor"},
        {"mkfifo -m 600 p 2>/dev/null; exec 3<>p 4>p 3<&- >&4 4>&-", "Broken pipe"}};
    for (const auto& [setup, reason] : failures)
        for (const std::vector<std::string>& arguments : {std::vector<std::string>{"a.frag"},
                                                          {"a.frag", "--json"},
                                                          {"a.frag", "--json", "--ordered"}})
            expect(batch(arguments, setup), 5, "",
                   "vexacm: cannot write standard output: " + reason + "\n");
}

/// So many files, with errors in some; a list of them.
class ManyFiles : public Batch_test {
protected:
    std::string add_sources(int count) {
        std::string list;
        for (int i = 0; i < count; ++i) {
            const std::string name = "s" + std::to_string(i) + ".frag";
            add_source(name, i % 7 == 0 ? "ERROR" : "WARN");
            list += path(name) + "\n";
        }
        write_file(path("list"), list);
        return "@" + path("list");
    }

    static std::vector<std::string> sorted_lines(std::string_view text) {
        std::vector<std::string> all;
        for (; !text.empty(); text.remove_prefix(all.back().size() + 1))
            all.emplace_back(text.substr(0, text.find('\n')));
        std::sort(all.begin(), all.end());
        return all;
    }
};

TEST_F(ManyFiles, TenThousandThenAResultForEach) {
    const std::string list = add_sources(10000);
    const auto result = batch({"--json", list, "--core", "Vexa-K460"});
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 10000);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 1);
}

TEST_F(ManyFiles, AnyNumberOfWorkersAndAnyFolderThenTheSameBytes) {
    const std::string list = add_sources(700);
    const auto once = ordered({list, "-j", "1"});
    EXPECT_EQ(std::count(once.out.begin(), once.out.end(), '\n'), 2100);
    EXPECT_TRUE(ordered({list, "-j", "2"}).out == once.out);
    EXPECT_TRUE(ordered({list, "-j", "5"}, "cd /").out == once.out);
    // In the order in which jobs end, they are the same lines.
    EXPECT_TRUE(sorted_lines(batch({"--json", list, "-j", "3"}).out) == sorted_lines(once.out));
}

} // namespace
