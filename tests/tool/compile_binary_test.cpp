// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

const std::string BINARY("\x00\x01\n\xff", 4);
const std::string COMPILER = "compiler: Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0 openglessl\n";

class CompileBinary : public Tool_test {
protected:
    CompileBinary() { add_source("a.frag", "BINARY"); }

    Process_result compile_to(const std::string& output, std::string_view setup = "") const {
        return vexacm({"compile", "a.frag", "-o", output}, "", setup);
    }

    mode_t mode(std::string_view name) const {
        struct stat status {};
        EXPECT_EQ(stat(path(name).c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    using Names = std::vector<std::string>;
};

TEST_F(CompileBinary, OutputThenWrittenWhole) {
    expect(compile_to("out"), 0, COMPILER + "binary: 4 bytes in out\n", "");
    EXPECT_EQ(read_file(path("out")), BINARY);
    EXPECT_EQ(files(), (Names{"a.frag", "out"}));
    EXPECT_NE(take_requests().find(" binary=1 "), std::string::npos);
}

TEST_F(CompileBinary, JsonThenSizeAndFile) {
    const Process_result result = vexacm({"compile", "a.frag", "-o", "out", "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("  \"binary_size\": 4\n}\n"), std::string::npos) << result.out;
    EXPECT_EQ(read_file(path("out")), BINARY);
}

TEST_F(CompileBinary, StandardOutputThenNothingElseOnIt) {
    expect(compile_to("-"), 0, BINARY, "");
    EXPECT_EQ(files(), Names{"a.frag"});
}

TEST_F(CompileBinary, StandardOutputAndJsonThenWrongUse) {
    expect(vexacm({"compile", "a.frag", "-o", "-", "--json"}), 2, "",
           "vexacm: --json and -o - both want standard output\n");
}

TEST_F(CompileBinary, NewFileThenPermissionsOfTheUmask) {
    EXPECT_EQ(compile_to("out", "umask 027").status, 0);
    EXPECT_EQ(mode("out"), 0640U);
}

TEST_F(CompileBinary, OldFileThenReplacedWithItsPermissions) {
    write_file(path("out"), "longer than what comes");
    fs::permissions(path("out"), fs::perms{0604});
    EXPECT_EQ(compile_to("out").status, 0);
    EXPECT_EQ(read_file(path("out")), BINARY);
    EXPECT_EQ(mode("out"), 0604U);
}

TEST_F(CompileBinary, LinkThenItsFileIsReplaced) {
    fs::create_directory(path("there"));
    write_file(path("there/file"), "old");
    fs::create_symlink("there/file", path("out"));
    EXPECT_EQ(compile_to("out").status, 0);
    EXPECT_TRUE(fs::is_symlink(path("out")));
    EXPECT_EQ(read_file(path("there/file")), BINARY);
}

TEST_F(CompileBinary, PipeThenWrittenTo) {
    ASSERT_EQ(mkfifo(path("out").c_str(), 0600), 0);
    const int pipe = open(path("out").c_str(), O_RDWR | O_NONBLOCK);
    expect(compile_to("out"), 0, COMPILER + "binary: 4 bytes in out\n", "");
    char received[8];
    EXPECT_EQ(std::string(received, static_cast<size_t>(read(pipe, received, 4))), BINARY);
    EXPECT_TRUE(fs::is_fifo(path("out")));
    close(pipe);
}

TEST_F(CompileBinary, SourceHasErrorsThenNoFileAndTheOldOneStays) {
    add_source("bad.frag", "ERROR");
    write_file(path("out"), "old");
    expect(vexacm({"compile", "bad.frag", "-o", "out"}), 1, COMPILER,
           "bad.frag: 3:4: error\nbad.frag: 5:6: another\nbad.frag: 1:2: warning\n");
    EXPECT_EQ(read_file(path("out")), "old");
    EXPECT_EQ(vexacm({"compile", "bad.frag", "-o", "-"}).out, "");
}

TEST_F(CompileBinary, CompilerReturnsNoneThenRefused) {
    add_source("none.frag");
    expect(vexacm({"compile", "none.frag", "-o", "out"}), 4, COMPILER,
           "vexacm: none.frag: the compiler returned no binary\n");
    EXPECT_FALSE(fs::exists(path("out")));
}

TEST_F(CompileBinary, NotSupportedThenRefused) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k58x", "r0p0").pair("openglessl_extensions", "").outputs().result(3);
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    expect(compile_to("out"), 4, "compiler: Vexa-K300_r9p0-00rel0 Vexa-K580 r0p0 openglessl\n",
           "Compiler Manager Error: Binary output not supported.\n"
           "vexacm: a.frag: the compiler did not carry out the request\n");
}

TEST_F(CompileBinary, FolderIsMissingThenFailed) {
    expect(compile_to("gone/out"), 5, COMPILER,
           "vexacm: cannot write gone/out: No such file or directory\n");
    expect(compile_to(""), 5, COMPILER, "vexacm: cannot write : No such file or directory\n");
}

TEST_F(CompileBinary, OutputIsAFolderThenFailed) {
    fs::create_directory(path("out"));
    expect(compile_to("out"), 5, COMPILER, "vexacm: cannot open out: Is a directory\n");
}

TEST_F(CompileBinary, WriteFailsThenNoHalfFileAndTheOldOneStays) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k58x", "r0p0").pair("openglessl_extensions", "").binary_output(1);
    plugin.outputs().binary(std::string(5000, 'x'));
    plugins.add_driver("openglessl", "Vexa-K300_r9p0-00rel0", plugin);
    write_file(path("out"), "old");
    // 4096 bytes.
    expect(compile_to("out", "ulimit -f 8"), 5,
           "compiler: Vexa-K300_r9p0-00rel0 Vexa-K580 r0p0 openglessl\n",
           "vexacm: cannot write out: File too large\n");
    EXPECT_EQ(read_file(path("out")), "old");
    EXPECT_EQ(files(), (Names{"a.frag", "out"}));
}

} // namespace
