// SPDX-License-Identifier: MIT
// What the request of the other tests cannot express.
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

class Raw_inputs : public testing::Test {
protected:
    int compile_raw() {
        const int result = plugin_.compile(&inputs_, &outputs_);
        plugin_.release_outputs(&outputs_);
        return result;
    }

    const Open_plugin plugin_;
    const std::string source_ = with_body("");
    const char* options_[4] = {"shader_type", SUBJECT.shader_type, "kernel_name", "k"};
    vexaoc_inputs inputs_ = {source_.c_str(), 4, options_, "k46x", "r0p0_00rel0", 1};
    vexaoc_outputs outputs_ = {};
};

TEST_F(Raw_inputs, CompleteOnesCompile) {
    EXPECT_EQ(compile_raw(), VEXAOC_SUCCESS);
}

TEST_F(Raw_inputs, OddNumberOfOptionsIsRefused) {
    inputs_.num_options = 3;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Raw_inputs, NullKeyOrValueIsRefused) {
    options_[3] = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    options_[3] = "k";
    options_[2] = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Raw_inputs, NullOptionsAreRefused) {
    inputs_.options = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    inputs_.num_options = 0;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Raw_inputs, NullTextsAreRefused) {
    inputs_.source = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    inputs_.source = source_.c_str();
    inputs_.core_name = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
    inputs_.core_name = "k46x";
    inputs_.core_revision = nullptr;
    EXPECT_EQ(compile_raw(), VEXAOC_INVALID_PARAMETERS);
}

TEST_F(Raw_inputs, NullRecordsAreRefused) {
    plugin_.get_api_version(nullptr);
    EXPECT_NE(plugin_.get_capabilities(nullptr), 0);
    EXPECT_NE(plugin_.release_capabilities(nullptr), 0);
    EXPECT_EQ(plugin_.compile(nullptr, &outputs_), VEXAOC_INVALID_PARAMETERS);
    EXPECT_EQ(plugin_.compile(&inputs_, nullptr), VEXAOC_INVALID_PARAMETERS);
    EXPECT_NE(plugin_.release_outputs(nullptr), 0);
}

TEST_F(Raw_inputs, ReleaseLeavesAnEmptyRecord) {
    ASSERT_EQ(plugin_.compile(&inputs_, &outputs_), VEXAOC_SUCCESS);
    ASSERT_NE(outputs_.binary, nullptr);
    EXPECT_EQ(plugin_.release_outputs(&outputs_), VEXAOC_SUCCESS);
    EXPECT_EQ(outputs_.binary, nullptr);
    EXPECT_EQ(outputs_.string_lists, nullptr);
    EXPECT_EQ(plugin_.release_outputs(&outputs_), VEXAOC_SUCCESS);
}

} // namespace
