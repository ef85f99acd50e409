// SPDX-License-Identifier: MIT
// Which files are compiled, and with what.
#include "batch_test.hpp"

#include <algorithm>
#include <filesystem>

namespace {

using Sources = Batch_test;

const std::string NO_STAGE = "tells no stage: name it in a manifest";

TEST_F(Sources, ShadersAndKernelsThenEachGoesToItsOwnCompilers) {
    add_source("a.frag");
    add_source("b.cl");
    add_source("c.vert");
    const auto result = ordered({"a.frag", "b.cl", "c.vert", "--kernel", "k"});
    EXPECT_EQ(brief(result.out),
              lines("a.frag") + line("b.cl", "K580", "compiled") + lines("c.vert"));
    EXPECT_EQ(result.status, 0);
}

TEST_F(Sources, FiltersThenOnlyThose) {
    add_source("a.frag");
    EXPECT_EQ(brief(ordered({"a.frag", "--core", "Vexa-K420"}).out),
              line("a.frag", "K420", "compiled"));
    EXPECT_EQ(brief(ordered({"a.frag", "--min-version", "310"}).out),
              line("a.frag", "K580", "compiled") + line("a.frag", "K460", "compiled"));
}

TEST_F(Sources, NoCompilerForAnyThenSaid) {
    add_source("a.frag");
    expect(batch({"a.frag", "--core", "none"}), 3, "",
           "vexacm: no compiler matches for 1 of 1 sources: with --api 'openglessl' --core 'none' "
           "none is left of Vexa-K580, Vexa-K460, Vexa-K420\n");
}

TEST_F(Sources, NoCompilerForSomeThenSaidAndTheOthersAreCompiled) {
    add_source("a.frag");
    add_source("b.cl");
    const auto result = ordered({"a.frag", "b.cl", "--kernel", "k", "--api", "openglessl"});
    EXPECT_EQ(brief(result.out), lines("a.frag"));
    EXPECT_EQ(result.err, "vexacm: no compiler matches for 1 of 2 sources: --api 'openglessl' is "
                          "not for them\n");
    EXPECT_EQ(result.status, 3);
}

TEST_F(Sources, StrangeNamesThenCompiled) {
    const std::string names[] = {
        "with blank.frag", "with 'quotes\".frag", "with\nnewline.frag", "not\xff\xfeutf8.frag",
        "-D.frag",         "%41~.frag",           "\u00e4.frag"};
    std::vector<std::string> arguments{"--core", "Vexa-K580", "--outputs", "out", "--"};
    std::string expected;
    std::string list;
    for (const std::string& name : names) {
        add_source(name, "BINARY");
        arguments.push_back(name);
        expected += line(name, "K580", "compiled");
        list += name + '\0';
    }
    const auto result = ordered(arguments);
    EXPECT_EQ(brief(result.out), expected);
    EXPECT_EQ(result.status, 0) << result.err;
    const std::string folder = "out/Vexa-K300_r5p0-06rel0/Vexa-K580/r0p0_00rel0/";
    for (const std::string name :
         {"with blank.frag.bin", "with 'quotes\".frag.bin", "with%0Anewline.frag.bin",
          "not%FF%FEutf8.frag.bin", "-D.frag.bin", "%2541%7E.frag.bin", "%C3%A4.frag.bin"})
        EXPECT_EQ(read_file(path(folder + name)), std::string("\x00\x01\n\xff", 4)) << name;

    write_file(path("list"), list);
    EXPECT_EQ(brief(ordered({"--core", "Vexa-K580", "@list"}).out), expected);
}

TEST_F(Sources, ListThenItsLines) {
    add_source("a.frag");
    add_source("b c.frag");
    write_file(path("list"), "a.frag\n\nb c.frag");
    EXPECT_EQ(brief(ordered({"@list", "a.frag"}).out),
              lines("a.frag") + lines("b c.frag") + lines("a.frag"));
    const auto piped = vexacm({"batch", "--json", "--ordered", "@-"}, "b c.frag\n");
    EXPECT_EQ(brief(piped.out), lines("b c.frag"));
}

TEST_F(Sources, ManifestThenEachWithItsOptions) {
    std::filesystem::create_directory(path("sub"));
    add_source("sub/a.glsl");
    add_source("sub/b.cl");
    add_source("sub/c.frag");
    write_file(path("sub/m.json"), R"({"sources": [
        {"source": "a.glsl", "stage": "vertex", "defines": ["A=1", "B"]},
        {"source": "b.cl", "kernels": ["one", "two"]},
        {"source": ")" + path("sub/c.frag") +
                                       R"("}]})");
    const auto result = ordered({"--manifest", "sub/m.json", "-D", "ALL", "--core", "Vexa-K580"});
    EXPECT_EQ(brief(result.out), line("sub/a.glsl", "K580", "compiled") +
                                     line("sub/b.cl", "K580", "compiled") +
                                     line(path("sub/c.frag"), "K580", "compiled"));
    std::string requests = take_requests();
    for (const std::string options :
         {"8 shader_type vertex prerotate false compiler_type openglessl define ALL define A=1 "
          "define B",
          "8 shader_type kernel kernel_name one kernel_name two compiler_type opencl define ALL",
          "8 shader_type fragment prerotate false compiler_type openglessl define ALL"})
        EXPECT_NE(requests.find(options.substr(2)), std::string::npos) << options << requests;
}

TEST_F(Sources, WrongManifestThenSaid) {
    const std::pair<std::string, std::string> manifests[] = {
        {R"({"sources": [{"source": "a.frag", "stag": "vertex"}]})", "unknown key 'stag'"},
        {R"({"source": []})", "unknown key 'source'"},
        {R"({"sources": [{"stage": "vertex"}]})", "an entry without a source"},
        {R"({"sources": [{"source": "a.glsl"}]})", "no stage for 'a.glsl'"},
        {R"({"sources": [{"source": "a.frag", "stage": "mesh"}]})", "no stage for 'a.frag'"}};
    for (const auto& [text, reason] : manifests) {
        write_file(path("m.json"), text);
        expect(batch({"--manifest", "m.json"}), 2, "",
               "vexacm: manifest 'm.json': " + reason + "\n");
    }
    for (const std::string text : {"", "[]", R"({"sources": 1})", R"({"sources": [[]]})"}) {
        write_file(path("m.json"), text);
        EXPECT_EQ(batch({"--manifest", "m.json"}).status, 2) << text;
    }
}

TEST_F(Sources, NoneThenWrongUse) {
    expect(batch({}), 2, "", "vexacm: no sources: name files, @LIST or --manifest\n");
    write_file(path("list"), "\n");
    expect(batch({"@list"}), 2, "", "vexacm: no sources: name files, @LIST or --manifest\n");
}

TEST_F(Sources, NoStageOrNoKernelThenWrongUse) {
    expect(batch({"a.frag", "b.glsl"}), 2, "", "vexacm: the ending of 'b.glsl' " + NO_STAGE + "\n");
    expect(batch({"b.cl"}), 2, "", "vexacm: name at least one kernel of 'b.cl' with --kernel\n");
    expect(batch({"a.frag", "--kernel", "k"}), 2, "",
           "vexacm: --kernel is given, and no source needs it\n");
}

TEST_F(Sources, WrongOptionsThenWrongUse) {
    const std::pair<std::vector<std::string>, std::string> wrong[] = {
        {{"-j", "0"}, "-j takes at least 1"},
        {{"--timeout", "0"}, "--timeout takes more than 0 seconds"},
        {{"--timeout", "nan"}, "--timeout takes more than 0 seconds"},
        {{"--ordered"}, "--ordered is for --json"},
        {{"--outputs="}, "--outputs takes a directory"}};
    for (auto [arguments, reason] : wrong) {
        arguments.push_back("a.frag");
        expect(batch(arguments), 2, "", "vexacm: " + reason + "\n");
    }
}

TEST_F(Sources, UnreadableThenItsJobsSaySoAndTheOthersAreCompiled) {
    add_source("a.frag");
    add_source("nul.frag", std::string_view("a\0b", 3));
    std::filesystem::create_directory(path("folder.frag"));
    const auto result = ordered(
        {"a.frag", "none.frag", "nul.frag", "folder.frag", "pipe.frag", "--core", "Vexa-K580"},
        "mkfifo pipe.frag");
    EXPECT_EQ(brief(result.out),
              line("a.frag", "K580", "compiled") +
                  line("none.frag", "K580", "unreadable", "No such file or directory") +
                  line("nul.frag", "K580", "unreadable", "it has NUL bytes") +
                  line("folder.frag", "K580", "unreadable", "Is a directory") +
                  line("pipe.frag", "K580", "unreadable", "no regular file"));
    EXPECT_EQ(result.status, 5);
}

TEST_F(Sources, MissingListOrManifestThenFailed) {
    expect(batch({"@none"}), 5, "", "vexacm: cannot open none: No such file or directory\n");
    expect(batch({"--manifest", "none"}), 5, "",
           "vexacm: cannot open none: No such file or directory\n");
}

} // namespace
