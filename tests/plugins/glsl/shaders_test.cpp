// SPDX-License-Identifier: MIT
// The shaders of the folder beside this file.
#include "plugin_test.hpp"
#include "spirv.hpp"

#include <gtest/gtest.h>

namespace {

// OpDecorate (71) of this decoration, each for another variable.
std::size_t decorated(const std::vector<std::uint8_t>& binary, std::uint32_t decoration) {
    const std::vector<std::uint32_t> words = words_of(binary);
    std::size_t count = 0;
    for (std::size_t at = 5; at < words.size(); at += words[at] >> 16U) {
        if ((words[at] & 0xffffU) == 71U && words[at + 2] == decoration)
            ++count;
    }
    return count;
}

TEST(Spirv, PlacesThatTheSourceLeavesOpenAreChosen) {
    constexpr std::uint32_t LOCATION = 30;
    constexpr std::uint32_t BINDING = 33;
    const std::vector<std::uint8_t> vertex = compile_file("lit_300.vert").binary;
    EXPECT_EQ(decorated(vertex, LOCATION), 7U); // three inputs, three outputs, the matrix
    const std::vector<std::uint8_t> fragment = compile_file("lit_300.frag").binary;
    EXPECT_EQ(decorated(fragment, LOCATION), 8U); // three inputs, the output, four uniforms
    EXPECT_EQ(decorated(fragment, BINDING), 4U);
}

TEST(Broken_shader, AllErrorsAreReported) {
    const Compiled compiled = compile_file("broken_names.frag");
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    const Texts expected = {
        "ERROR: 0:7: 'albedo' : undeclared identifier",
        "ERROR: 0:7: 'texture' : no matching overloaded function found",
        "ERROR: 0:7: '=' :  cannot convert from ' const float' to ' temp mediump 3-component "
        "vector "
        "of float'",
        "ERROR: 0:9: '' :  syntax error, unexpected IDENTIFIER, expecting COMMA or SEMICOLON",
    };
    EXPECT_EQ(compiled.errors, expected);
    EXPECT_EQ(compiled.warnings, Texts{});
    EXPECT_TRUE(compiled.binary.empty());
    EXPECT_TRUE(compiled.table.empty());
}

TEST(Broken_shader, MissingPrecisionIsAnError) {
    const Texts expected = {
        "ERROR: 0:1: 'float' : type requires declaration of default precision qualifier",
        "ERROR: 0:5: 'assign' :  cannot convert from ' temp mediump 3-component vector of float' "
        "to "
        "' fragColor mediump 4-component vector of float FragColor'",
    };
    EXPECT_EQ(compile_file("broken_precision.frag").errors, expected);
}

TEST(Broken_shader, MissingMainIsAnError) {
    const Texts expected = {
        "ERROR: Linking compute stage: Missing entry point: Each stage requires one entry point"};
    EXPECT_EQ(compile_file("broken_no_main.comp").errors, expected);
}

TEST(Broken_shader, ExtensionsStageAndLineDirectiveAreReported) {
    const Compiled compiled = compile_file("broken_stage.vert");
    const Texts errors = {
        "ERROR: 0:2: '#extension' : extension not supported in version 310: GL_OES_texture_3D",
        "ERROR: 0:4: '#extension' : extension not supported: GL_QRX_shader_framebuffer_fetch",
        "ERROR: 0:100: 'discard' : not supported in this stage: vertex",
        "ERROR: 0:101: 'dFdx' : no matching overloaded function found",
        "ERROR: 0:101: 'assign' :  cannot convert from ' const float' to ' gl_Position highp "
        "4-component vector of float Position'",
    };
    EXPECT_EQ(compiled.errors, errors);
    const Texts warnings = {"WARNING: 0:3: '#extension' : extension not supported in "
                            "version 310: GL_EXT_shadow_samplers"};
    EXPECT_EQ(compiled.warnings, warnings);
}

TEST(Broken_shader, DesktopVersionIsNamed) {
    EXPECT_EQ(compile_file("broken_version.frag").errors,
              Texts{"ERROR: #version: 330 is not supported; use 100, 300 es, 310 es or 320 es"});
    EXPECT_EQ(compile(Request("#version 450 core\nvoid main() {}")).errors,
              Texts{"ERROR: #version: 450 is not supported; use 100, 300 es, 310 es or 320 es"});
    EXPECT_EQ(compile(Request("#version 110\nvoid main() {}", "vertex")).errors,
              Texts{"ERROR: #version: 110 is not supported; use 100, 300 es, 310 es or 320 es"});
}

TEST(Broken_shader, VersionWithoutProfileIsAnError) {
    EXPECT_EQ(compile(Request("#version 300\nvoid main() {}", "vertex")).errors,
              Texts{"ERROR: #version: versions 300, 310, and 320 require specifying the 'es' "
                    "profile"});
}

TEST(Broken_shader, StageThatTheVersionLacksIsAnError) {
    EXPECT_EQ(
        compile(Request("#version 300 es\nvoid main() {}", "compute")).errors,
        Texts{"ERROR: #version: compute shaders require es profile with version 310 or above, "
              "or non-es profile with version 420 or above"});
    EXPECT_EQ(
        compile(Request("#version 100\nvoid main() {}", "geometry")).errors,
        Texts{"ERROR: #version: geometry shaders require es profile with version 310 or non-es "
              "profile with version 150 or above"});
}

TEST(Broken_shader, EmptySourceIsAnError) {
    EXPECT_EQ(
        compile(Request("", "vertex")).errors,
        Texts{"ERROR: Linking vertex stage: Missing entry point: Each stage requires one entry "
              "point"});
}

TEST(Broken_shader, IncludeIsAnError) {
    EXPECT_EQ(compile(Request("#include \"/etc/passwd\"\nvoid main() {}", "vertex")).errors,
              (Texts{"ERROR: 0:1: '#include' : required extension not requested: "
                     "GL_GOOGLE_include_directive",
                     "ERROR: 0:1: '#include' : Could not process include directive for header "
                     "name: /etc/passwd"}));
}

TEST(Broken_shader, OwnErrorTextIsKept) {
    EXPECT_EQ(compile(Request("#error not  today\nvoid main() {}", "vertex")).errors,
              Texts{"ERROR: 0:1: '#error' : not today"});
}

} // namespace
