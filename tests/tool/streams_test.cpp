// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

#include <filesystem>

namespace {

class StandardStreams : public Tool_test {
protected:
    StandardStreams() { add_source("a.frag", "BINARY"); }

    const std::vector<std::vector<std::string>> writers = {{"--help"},
                                                           {"--version"},
                                                           {"list"},
                                                           {"list", "--json"},
                                                           {"info", "0"},
                                                           {"info", "0", "--json"},
                                                           {"compile", "a.frag"},
                                                           {"compile", "a.frag", "--json"},
                                                           {"compile", "a.frag", "-o", "-"}};
};

TEST_F(StandardStreams, OutputIsFullThenFailed) {
    for (const auto& arguments : writers)
        expect(vexacm(arguments, "", "exec >/dev/full"), 5, "",
               "vexacm: cannot write standard output: No space left on device\n");
}

TEST_F(StandardStreams, OutputIsClosedThenFailed) {
    for (const auto& arguments : writers)
        expect(vexacm(arguments, "", "exec >&-"), 5, "",
               "vexacm: cannot write standard output: Bad file descriptor\n");
}

TEST_F(StandardStreams, ReaderIsGoneThenFailedWithoutASignal) {
    for (const auto& arguments : writers)
        expect(vexacm(arguments, "", "mkfifo -m 600 p 2>/dev/null; exec 3<>p 4>p 3<&- >&4 4>&-"), 5,
               "", "vexacm: cannot write standard output: Broken pipe\n");
}

TEST_F(StandardStreams, OutputIsClosedButUnusedThenTheStatusStands) {
    expect(vexacm({"list", "--core", "none"}, "", "exec >&-"), 3, "",
           "vexacm: no compiler matches: with --core 'none' none is left of Vexa-K580, "
           "Vexa-K460, Vexa-K420\n");
    expect(vexacm({"list", "--api", "none"}, "", "exec >/dev/full"), 2, "",
           usage_error("--api: none not in {openglessl,opencl}"));
}

TEST_F(StandardStreams, FailureAndNoMatchThenTheHigherStatus) {
    EXPECT_EQ(vexacm({"list", "--json", "--core", "none"}, "", "exec >/dev/full").status, 5);
}

TEST_F(StandardStreams, ErrorStreamIsFullThenFailed) {
    EXPECT_EQ(vexacm({"list", "--core", "none"}, "", "exec 2>/dev/full").status, 5);
    EXPECT_EQ(vexacm({"list", "--api", "none"}, "", "exec 2>&-").status, 5);
}

TEST_F(StandardStreams, ErrorStreamIsClosedButUnusedThenDone) {
    EXPECT_EQ(vexacm({"list"}, "", "exec 2>&-").status, 0);
}

// The lowest free number goes to the next file that is opened.
TEST_F(StandardStreams, OutputIsClosedThenNoFileTakesItsPlace) {
    plugins.add_driver("opencl", "Vexa-K300_r9p0-00rel0", Fake_plugin(), "holds_a_file");
    EXPECT_EQ(vexacm({"list"}, "", "exec >&-").status, 5);
    EXPECT_TRUE(std::filesystem::exists(path("held")));
    EXPECT_EQ(read_file(path("held")), "");
}

TEST_F(StandardStreams, AllButOutputAreClosedThenTheBinaryStaysClean) {
    EXPECT_EQ(vexacm({"compile", "a.frag", "-o", "out"}, "", "exec <&- 2>&-").status, 0);
    EXPECT_EQ(read_file(path("out")), std::string("\x00\x01\n\xff", 4));
}

TEST_F(StandardStreams, OutputIsClosedThenNoBinaryIsWritten) {
    EXPECT_EQ(vexacm({"compile", "a.frag", "-o", "out"}, "", "exec >&-").status, 5);
    EXPECT_FALSE(std::filesystem::exists(path("out")));
}

TEST_F(StandardStreams, InputIsClosedThenFailed) {
    expect(vexacm({"compile", "-", "--stage", "vertex"}, "", "exec <&-"), 5, "",
           "vexacm: cannot read standard input: Bad file descriptor\n");
}

} // namespace
