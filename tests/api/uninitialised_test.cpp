// SPDX-License-Identifier: MIT
#include <climits>
#include <cstring>

#include "api_test.hpp"

namespace {

using Uninitialised = Api_test;

constexpr const char* GENERAL_ERROR = "Compiler Manager Error: Please call "
                                      "vexacm_initialize_librariesbefore using other functions.\n";

struct Text_getter {
    const char* name;
    const char* (*get)(unsigned int);
};

constexpr Text_getter TEXT_GETTERS[] = {
    {"driver name", vexacm_get_driver_name},     {"core name", vexacm_get_core_name},
    {"core revision", vexacm_get_core_revision}, {"API name", vexacm_get_api_name},
    {"extensions", vexacm_get_extensions},
};

// A record that shows whether anything wrote into it.
template <class Record>
class Untouched {
public:
    Untouched() { std::memset(&record, 0xA5, sizeof record); }
    ~Untouched() {
        unsigned char junk[sizeof record];
        std::memset(junk, 0xA5, sizeof junk);
        EXPECT_EQ(std::memcmp(&record, junk, sizeof record), 0);
    }
    Record* operator&() { return &record; }

private:
    Record record;
};

void expect_the_getters_to_refuse(unsigned int id) {
    for (const Text_getter& getter : TEXT_GETTERS) {
        SCOPED_TRACE(getter.name);
        const char* text = "";
        EXPECT_EQ(stderr_of([&] { text = getter.get(id); }), GENERAL_ERROR);
        EXPECT_EQ(text, nullptr);
    }
    unsigned int version = 1;
    EXPECT_EQ(stderr_of([&] { version = vexacm_get_highest_api_version(id); }), GENERAL_ERROR);
    EXPECT_EQ(version, 0u);
    bool supported = true;
    EXPECT_EQ(stderr_of([&] { supported = vexacm_is_binary_output_supported(id); }), GENERAL_ERROR);
    EXPECT_FALSE(supported);
    supported = true;
    EXPECT_EQ(stderr_of([&] { supported = vexacm_is_prerotate_supported(id); }), GENERAL_ERROR);
    EXPECT_FALSE(supported);
}

void expect_everything_to_refuse() {
    // On the stack: freeing it would end the test.
    unsigned int on_stack[2] = {1, 2};
    unsigned int* ids = on_stack;
    unsigned int count = 2;
    EXPECT_EQ(stderr_of([&] {
                  vexacm_get_compilers(&ids, &count, nullptr, nullptr, nullptr, nullptr, nullptr,
                                       0);
              }),
              "Please call vexacm_initialize_libraries before trying to get compilers.\n");
    EXPECT_EQ(ids, on_stack);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(stderr_of([&] { vexacm_release_compilers(&ids, count); }),
              "Please call vexacm_initialize_libraries before trying to release compilers.\n");
    EXPECT_EQ(ids, on_stack);

    Untouched<vexaoc_outputs> outputs;
    bool result = true;
    EXPECT_EQ(stderr_of([&] {
                  result = vexacm_compile(&outputs, "source", "fragment", nullptr, 0, false, false,
                                          nullptr, 0, 0);
              }),
              "Please call vexacm_initialize_libraries before trying to compile.\n");
    EXPECT_FALSE(result);
    EXPECT_EQ(stderr_of([&] { vexacm_release_compiler_outputs(&outputs); }), GENERAL_ERROR);

    Untouched<vexacm_version> version;
    EXPECT_EQ(stderr_of([&] { vexacm_get_manager_version(&version); }), GENERAL_ERROR);

    for (const unsigned int id : {0u, 1u, UINT_MAX})
        expect_the_getters_to_refuse(id);
}

TEST_F(Uninitialised, EveryFunctionSaysWhatToDo) {
    expect_everything_to_refuse();
}

TEST_F(Uninitialised, EveryFunctionSaysWhatToDoAfterTheRelease) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin());
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(catalogue(), "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 openglessl 320\n");
    vexacm_release_libraries();
    expect_everything_to_refuse();
}

TEST_F(Uninitialised, EveryFunctionSaysWhatToDoAfterAnInitialisationThatThrew) {
    plugins.add_driver("openglessl", NEWEST, gles_plugin("none"));
    EXPECT_EQ(initialise_throws<std::invalid_argument>(plugins.root().c_str()), "stoi");
    expect_everything_to_refuse();
}

TEST_F(Uninitialised, NullArgumentsAreNotLookedAt) {
    EXPECT_EQ(
        stderr_of([] {
            vexacm_get_compilers(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
            vexacm_release_compilers(nullptr, 0);
            vexacm_compile(nullptr, nullptr, nullptr, nullptr, 1, false, false, nullptr, 1, 0);
            vexacm_get_manager_version(nullptr);
            vexacm_release_compiler_outputs(nullptr);
        }),
        std::string("Please call vexacm_initialize_libraries before trying to get "
                    "compilers.\n"
                    "Please call vexacm_initialize_libraries before trying to release "
                    "compilers.\n"
                    "Please call vexacm_initialize_libraries before trying to compile.\n") +
            GENERAL_ERROR + GENERAL_ERROR);
}

TEST_F(Uninitialised, ReleasingTheLibrariesDoesNothingAndIsSilent) {
    EXPECT_EQ(stderr_of([] {
                  vexacm_release_libraries();
                  vexacm_release_libraries();
              }),
              "");
    EXPECT_EQ(initialise(), "");
    EXPECT_EQ(stderr_of([] {
                  vexacm_release_libraries();
                  vexacm_release_libraries();
              }),
              "");
    expect_everything_to_refuse();
}

TEST_F(Uninitialised, WhatTheCallerHoldsStaysValidAndIsNotReleased) {
    Fake_plugin plugin = gles_plugin();
    plugin.outputs("").a("error").binary("bytes");
    plugins.add_driver("openglessl", NEWEST, plugin);
    EXPECT_EQ(initialise(), "");
    unsigned int* ids = nullptr;
    unsigned int count = 0;
    vexacm_get_compilers(&ids, &count, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
    unsigned int* const kept = ids;
    Outputs outputs;
    EXPECT_TRUE(outputs.compile(Request()));
    vexacm_release_libraries();

    EXPECT_EQ(stderr_of([&] {
                  vexacm_release_compilers(&ids, count);
                  vexacm_release_compiler_outputs(&outputs.record);
              }),
              std::string("Please call vexacm_initialize_libraries before trying to release "
                          "compilers.\n") +
                  GENERAL_ERROR);
    EXPECT_EQ(ids, kept);
    EXPECT_EQ(ids[0], 0u);
    EXPECT_EQ(outputs.text(), "binary(6279746573) a(error)");

    // A later catalogue takes back what an earlier one handed out.
    EXPECT_EQ(initialise(), "");
    vexacm_release_compilers(&ids, count);
    EXPECT_EQ(ids, nullptr);
    outputs.release();
}

} // namespace
