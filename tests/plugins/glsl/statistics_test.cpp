// SPDX-License-Identifier: MIT
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

std::string row(const Table& table, const std::string& name) {
    for (const Texts& cells : table) {
        if (cells.at(0) == name)
            return cells.at(1);
    }
    return "no such row";
}

TEST(Statistics, HeadingsComeFirstAndEveryRowIsComplete) {
    const Table table = compile_file("lit_300.frag").table;
    ASSERT_FALSE(table.empty());
    const Texts headings = {"statistic", "count"};
    EXPECT_EQ(table.front(), headings);
    for (const Texts& cells : table)
        EXPECT_EQ(cells.size(), headings.size());
}

TEST(Statistics, SmallShaderIsCountedInFull) {
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
    EXPECT_EQ(compile_file("textured_100.vert").table, expected);
}

TEST(Statistics, InterfaceIsCountedByKind) {
    const Table vertex = compile_file("lit_300.vert").table;
    EXPECT_EQ(row(vertex, "inputs"), "3");
    EXPECT_EQ(row(vertex, "outputs"), "3");
    EXPECT_EQ(row(vertex, "uniforms"), "1");
    EXPECT_EQ(row(vertex, "uniform blocks"), "1");

    const Table fragment = compile_file("lit_300.frag").table;
    EXPECT_EQ(row(fragment, "uniforms"), "2");
    EXPECT_EQ(row(fragment, "samplers"), "2");
    EXPECT_EQ(row(fragment, "texture instructions"), "2");
    EXPECT_EQ(row(fragment, "function calls"), "1");

    const Table layered = compile_file("layered_310.frag").table;
    EXPECT_EQ(row(layered, "samplers"), "1");
    EXPECT_EQ(row(layered, "images"), "1");
    EXPECT_EQ(row(layered, "image instructions"), "1");

    EXPECT_EQ(row(compile_file("particles_310.comp").table, "storage blocks"), "2");
}

TEST(Statistics, BuiltInVariablesDoNotCount) {
    const Table geometry = compile_file("wireframe_310.geom").table;
    EXPECT_EQ(row(geometry, "inputs"), "1");
    EXPECT_EQ(row(geometry, "outputs"), "1");
    const Table control = compile_file("terrain_320.tesc").table;
    EXPECT_EQ(row(control, "inputs"), "0");
    EXPECT_EQ(row(control, "outputs"), "0");
    EXPECT_EQ(row(compile_file("layered_310.frag").table, "inputs"), "1");
}

TEST(Statistics, InstructionsAreThoseOfTheBinary) {
    const Compiled compiled = compile_file("lit_300.frag");
    std::size_t instructions = 0;
    for (std::size_t at = 20; at < compiled.binary.size(); ++instructions)
        at += 4U * (compiled.binary[at + 2] + 256U * compiled.binary[at + 3]);
    EXPECT_EQ(row(compiled.table, "SPIR-V instructions"), std::to_string(instructions));
}

} // namespace
