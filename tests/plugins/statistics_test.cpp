// SPDX-License-Identifier: MIT
#include "plugin_under_test.hpp"

#include <gtest/gtest.h>

namespace {

using Table = std::vector<std::vector<std::string>>;

Table table_of(const std::string& file, const std::string& stage) {
    return compile(Request(shader_file(file), stage)).table;
}

std::string row(const Table& table, const std::string& name) {
    for (const std::vector<std::string>& cells : table) {
        if (cells.at(0) == name)
            return cells.at(1);
    }
    return "no such row";
}

TEST(Glsl_statistics, HeadingsComeFirstAndEveryRowIsComplete) {
    const Table table = table_of("lit_300.frag", "fragment");
    ASSERT_FALSE(table.empty());
    const std::vector<std::string> headings = {"statistic", "count"};
    EXPECT_EQ(table.front(), headings);
    for (const std::vector<std::string>& cells : table)
        EXPECT_EQ(cells.size(), headings.size());
}

TEST(Glsl_statistics, SmallShaderIsCountedInFull) {
    const Table expected = {{"statistic", "count"},
                            {"inputs", "2"},
                            {"outputs", "1"},
                            {"uniforms", "1"},
                            {"uniform blocks", "0"},
                            {"storage blocks", "0"},
                            {"samplers", "0"},
                            {"images", "0"},
                            {"SPIR-V instructions", "50"},
                            {"arithmetic instructions", "1"},
                            {"texture instructions", "0"},
                            {"image instructions", "0"},
                            {"load and store instructions", "5"},
                            {"branch instructions", "0"},
                            {"function calls", "0"}};
    EXPECT_EQ(table_of("textured_100.vert", "vertex"), expected);
}

TEST(Glsl_statistics, InterfaceIsCountedByKind) {
    const Table vertex = table_of("lit_300.vert", "vertex");
    EXPECT_EQ(row(vertex, "inputs"), "3");
    EXPECT_EQ(row(vertex, "outputs"), "3");
    EXPECT_EQ(row(vertex, "uniforms"), "1");
    EXPECT_EQ(row(vertex, "uniform blocks"), "1");

    const Table fragment = table_of("lit_300.frag", "fragment");
    EXPECT_EQ(row(fragment, "uniforms"), "2");
    EXPECT_EQ(row(fragment, "samplers"), "2");
    EXPECT_EQ(row(fragment, "texture instructions"), "2");
    EXPECT_EQ(row(fragment, "function calls"), "1");

    const Table layered = table_of("layered_310.frag", "fragment");
    EXPECT_EQ(row(layered, "samplers"), "1");
    EXPECT_EQ(row(layered, "images"), "1");
    EXPECT_EQ(row(layered, "image instructions"), "1");

    EXPECT_EQ(row(table_of("particles_310.comp", "compute"), "storage blocks"), "2");
}

TEST(Glsl_statistics, BuiltInVariablesDoNotCount) {
    const Table geometry = table_of("wireframe_310.geom", "geometry");
    EXPECT_EQ(row(geometry, "inputs"), "1");
    EXPECT_EQ(row(geometry, "outputs"), "1");
    const Table control = table_of("terrain_320.tesc", "tessellation_control");
    EXPECT_EQ(row(control, "inputs"), "0");
    EXPECT_EQ(row(control, "outputs"), "0");
    EXPECT_EQ(row(table_of("layered_310.frag", "fragment"), "inputs"), "1");
}

TEST(Glsl_statistics, InstructionsAreThoseOfTheBinary) {
    const Compiled compiled = compile(Request(shader_file("lit_300.frag"), "fragment"));
    std::size_t instructions = 0;
    for (std::size_t at = 20; at < compiled.binary.size(); ++instructions)
        at += 4U * (compiled.binary[at + 2] + 256U * compiled.binary[at + 3]);
    EXPECT_EQ(row(compiled.table, "SPIR-V instructions"), std::to_string(instructions));
}

TEST(Glsl_statistics, SourceWithErrorsHasNone) {
    EXPECT_TRUE(compile(Request("void main() { x; }", "vertex")).table.empty());
}

} // namespace
