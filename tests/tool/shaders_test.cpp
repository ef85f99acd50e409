// SPDX-License-Identifier: MIT
#include "tool_test.hpp"

#include <filesystem>

namespace {

/// The shaders of the examples, with the real compiler of the build folder.
class ExampleShaders : public Tool_test {
protected:
    Process_result compile(const std::string& shader) const {
        return run_here({VEXACM_TOOL, "compile", EXAMPLE_SHADERS "/" + shader, "-o", "out"});
    }
};

TEST_F(ExampleShaders, RightThenABinary) {
    for (const std::string shader : {"mesh.vert", "mesh.frag", "particles.comp"}) {
        const Process_result result = compile(shader);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_TRUE(std::filesystem::remove(path("out"))) << shader;
    }
}

TEST_F(ExampleShaders, BrokenThenEachMistakeIsTold) {
    const Process_result result = compile("broken.frag");
    EXPECT_EQ(result.status, 1);
    for (const std::string complaint : {"0:13: '='", "0:14: '-'", "0:15: 'alhpa'"})
        EXPECT_NE(result.err.find("broken.frag: ERROR: " + complaint), std::string::npos)
            << result.err;
    EXPECT_FALSE(std::filesystem::exists(path("out")));
}

} // namespace
