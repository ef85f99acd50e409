// SPDX-License-Identifier: MIT
//
// The library against its model, on directories and requests made by chance.
// To run one seed alone: --gtest_filter='*Library.*/17'.
#include <cstdio>

#include <gtest/gtest.h>

#include "caller.hpp"
#include "exercise.hpp"
#include "written.hpp"

namespace {

const unsigned SEEDS = 40;
const unsigned DIRECTORIES = 25;

class Library : public testing::TestWithParam<unsigned> {};

TEST_P(Library, GeneratedDirectoriesThenWhatTheModelPredicts) {
    model::Dice dice(GetParam());
    for (unsigned i = 0; i < DIRECTORIES; ++i) {
        Plugin_directory files;
        model::Directory directory = model::generate_directory(dice);
        model::write(directory, files);
        model::Manager manager(directory);
        model::Caller caller(directory, files);
        std::string history;
        const auto judge = [&](const model::Request& request, const model::Reply& predicted,
                               const model::Reply& actual) {
            history += shown(request) + "\n";
            EXPECT_EQ(shown(predicted), shown(actual))
                << "seed " << GetParam() << ", directory " << i << "\n"
                << shown(directory) << "== requests, the last is the one that differs\n"
                << history;
            return !HasFailure();
        };
        exercise(
            dice, manager, [&](const model::Request& request) { return caller.answer(request); },
            judge);
        if (HasFailure())
            break;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Library, testing::Range(0U, SEEDS));

/// Each text that the library can print, in the words that tell it apart.
const char* const MESSAGES[] = {
    "Unable to open library directory ",
    "Couldn't load library at ",
    "Library load error: ",
    " isn't implemented correctly",
    " has version ",
    "This compiler manager supports library version ",
    "Failed to get capabilities for library ",
    "Invalid or malformed flexible version specified for library ",
    "Version specified: ",
    " uses flexible version ",
    "This compiler manager supports flexible versions ",
    "unknown name format: Name does not begin with ",
    "unknown name format: Could not find revision delimiter ",
    "unknown name format: Could not find patch delimiter ",
    "unknown name format: Could not find version delimiter ",
    "unknown name format: Could not find release delimiter ",
    "unknown name format: Unknown core name",
    "unknown name format: stoi",
    "Could not get capabilities of library at ",
    " doesn't report a flexible version string.",
    " doesn't report a valid flexible version string: ",
    "Unknown flexible capability. Key: ",
    "Compiler Manager Error: Please call vexacm_initialize_librariesbefore using ",
    "Please call vexacm_initialize_libraries before trying to get compilers.",
    "Please call vexacm_initialize_libraries before trying to release compilers.",
    "Please call vexacm_initialize_libraries before trying to compile.",
    "NULL inputs passed to get_compilers",
    "NULL inputs passed to compile function.",
    "Unknown shader type: ",
    "Only OpenCL compilers can compile kernels.",
    "Compiler must support OpenGL ES 3.1 to use compute shaders.",
    "OpenGL ES 3.1 and extension GL_EXT_geometry_shader ",
    "must support extension GL_EXT_geometry_shader ",
    "OpenGL ES 3.1 and extension GL_EXT_tessellation_shader ",
    "must support extension GL_EXT_tessellation_shader ",
    "Cannot specify a shader name ",
    " can only be compiled using an OpenGL ES compiler.",
    "Must specify at least one kernel name ",
    "Compiler does not support prerotate.",
    "Core not supported.",
    "Invalid Parameters.",
    "Binary output not supported.",
    "Compiler memory error.",
    "NULL inputs to string_copy.",
};

/// What else is to come up, as it shows in a request and its reply.
const char* const SITUATIONS[] = {
    "invalid argument: stoi",
    "out of range: stoi",
    "true, lists:",
    "\"cl_khr_", // extensions found, and told
    "\"GL_QRX_",
    "\"GL_EXT_geometry_shader%20",
    "GL_EXT_color_buffer_half_float",
    "%20cl_khr_fp64%20",
    "shader_type geometry ",
    "shader_type tessellation_control ",
    "shader_type compute ",
    "kernel_name k kernel_name",
    "prerotate true",
    "prerotate false",
    "compilers kept", // by an initialisation that failed
    "no compilers",
    " unload\n",
};

class Generator : public testing::Test {
protected:
    /// How often a text comes up.
    unsigned count(const std::string& text) const {
        unsigned found = 0;
        for (std::size_t at = 0; (at = all.find(text, at)) != std::string::npos; ++at)
            ++found;
        return found;
    }

    std::string all; ///< every reply of the model to every seed
};

// Tests made by chance are only worth something where chance hits. The model is
// asked alone: no file is made, and a reason to refuse a file is made up.
TEST_F(Generator, AllSeedsThenEveryMessageComesUp) {
    for (unsigned seed = 0; seed < SEEDS; ++seed) {
        model::Dice dice(seed);
        for (unsigned i = 0; i < DIRECTORIES; ++i) {
            model::Directory directory = model::generate_directory(dice);
            model::Manager manager(directory);
            model::Manager twin(directory);
            exercise(
                dice, manager, [&](const model::Request& request) { return twin.answer(request); },
                [&](const model::Request& request, const model::Reply& reply, const model::Reply&) {
                    all += shown(reply);
                    if (std::holds_alternative<model::Initialise>(request) &&
                        reply.result != "true")
                        all += manager.compilers() ? "compilers kept\n" : "no compilers\n";
                    return true;
                });
        }
    }
    for (const char* const message : MESSAGES) {
        std::printf("%6u %s\n", count(message), message);
        EXPECT_GT(count(message), 0U) << message;
    }
    for (const char* const situation : SITUATIONS) {
        std::printf("%6u %s\n", count(situation), situation);
        EXPECT_GT(count(situation), 0U) << situation;
    }
}

} // namespace
