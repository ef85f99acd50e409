// SPDX-License-Identifier: MIT
#include <climits>

#include "api_test.hpp"

namespace {

constexpr const char* NULL_INPUTS = "Compiler Manager Error: NULL inputs passed to get_compilers\n";

// Eight compilers:
//
// 0 NEWEST Vexa-K460 r1p0_00rel0 opencl 200 binary
// 1 NEWEST Vexa-K460 r0p0_00rel0 opencl 200 binary
// 2 NEWEST Vexa-K580 r0p0_00rel0 openglessl 320 prerotate
// 3 NEWEST Vexa-K460 r1p0_00rel0 openglessl 320 prerotate
// 4 NEWEST Vexa-K420 r0p0_00rel0 openglessl 310 prerotate
// 5 OLDEST Vexa-K460 r1p0_00rel0 openglessl 300 binary
// 6 OLDEST Vexa-K420 r0p0_00rel0 openglessl 300 binary
// 7 OLDEST k99x r0p0_00rel0 openglessl 300 binary
class Query : public Api_test {
protected:
    Query() {
        Fake_plugin opencl = Fake_plugin::of_type("opencl");
        opencl.core("k46x", "r1p0_00rel0").core("k46x", "r0p0_00rel0");
        opencl.pair("opencl_version", "200").pair("opencl_extensions", "cl_x").binary_output(1);
        plugins.add_driver("opencl", NEWEST, opencl);
        Fake_plugin gles = Fake_plugin::of_type("openglessl");
        gles.core("k42x", "r0p0_00rel0").core("k58x", "r0p0_00rel0").core("k46x", "r1p0_00rel0");
        gles.pair("openglessl_version", "320").pair("prerotate", "true");
        plugins.add_driver("openglessl", NEWEST, gles.pair("openglessl_extensions", "GL_X"));
        Fake_plugin old = Fake_plugin::of_type("openglessl");
        old.core("k42x", "r0p0_00rel0").core("k99x", "r0p0_00rel0").core("k46x", "r1p0_00rel0");
        old.pair("openglessl_version", "300").pair("openglessl_extensions", "GL_X");
        plugins.add_driver("openglessl", OLDEST, old.binary_output(1));
        EXPECT_EQ(initialise(), "");
    }
};

using Ids = std::vector<unsigned int>;

void expect_found(const Filters& filters, const Ids& expected) {
    Ids found;
    EXPECT_EQ(stderr_of([&] { found = find_compilers(filters); }), "");
    EXPECT_EQ(found, expected);
}

TEST_F(Query, WithoutFiltersListsEveryCompiler) {
    expect_found({}, {0, 1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(catalogue(), "Vexa-K300_r5p0-06rel0 Vexa-K460 r1p0_00rel0 opencl 200 binary\n"
                           "Vexa-K300_r5p0-06rel0 Vexa-K460 r0p0_00rel0 opencl 200 binary\n"
                           "Vexa-K300_r5p0-06rel0 Vexa-K580 r0p0_00rel0 openglessl 320 prerotate\n"
                           "Vexa-K300_r5p0-06rel0 Vexa-K460 r1p0_00rel0 openglessl 320 prerotate\n"
                           "Vexa-K300_r5p0-06rel0 Vexa-K420 r0p0_00rel0 openglessl 310 prerotate\n"
                           "Vexa-K300_r1p0-00rel0 Vexa-K460 r1p0_00rel0 openglessl 300 binary\n"
                           "Vexa-K300_r1p0-00rel0 Vexa-K420 r0p0_00rel0 openglessl 300 binary\n"
                           "Vexa-K300_r1p0-00rel0 k99x r0p0_00rel0 openglessl 300 binary\n");
}

TEST_F(Query, FiltersByDriverName) {
    expect_found({NEWEST}, {0, 1, 2, 3, 4});
    expect_found({OLDEST}, {5, 6, 7});
    for (const char* const name :
         {MIDDLE, "", "Vexa-K300", "Vexa-K300_r5p0-06rel00", "vexa-k300_r5p0-06rel0",
          "libVexa-K300_r5p0-06rel0.so", "Vexa-K300_r5p0-06rel0 ", "*"})
        expect_found({name}, {});
}

TEST_F(Query, FiltersByTheCoreNameThatIsShown) {
    expect_found({nullptr, "Vexa-K460"}, {0, 1, 3, 5});
    expect_found({nullptr, "Vexa-K580"}, {2});
    expect_found({nullptr, "Vexa-K420"}, {4, 6});
    expect_found({nullptr, "k99x"}, {7});
    for (const char* const name : {"k46x", "", "Vexa-K46", "Vexa-K4600", "vexa-k460", "VEXA-K460",
                                   " Vexa-K460", "Vexa-", "Vexa-*"})
        expect_found({nullptr, name}, {});
}

TEST_F(Query, FiltersByCoreRevision) {
    expect_found({nullptr, nullptr, "r1p0_00rel0"}, {0, 3, 5});
    expect_found({nullptr, nullptr, "r0p0_00rel0"}, {1, 2, 4, 6, 7});
    for (const char* const revision : {"", "r1p0", "r1p0_00rel", "R1P0_00REL0", "r1p0_00rel00"})
        expect_found({nullptr, nullptr, revision}, {});
}

TEST_F(Query, FiltersByApiName) {
    expect_found({nullptr, nullptr, nullptr, "opencl"}, {0, 1});
    expect_found({nullptr, nullptr, nullptr, "openglessl"}, {2, 3, 4, 5, 6, 7});
    for (const char* const api : {"", "open", "OpenCL", "openglesslx", "opengles", "opencl "})
        expect_found({nullptr, nullptr, nullptr, api}, {});
}

TEST_F(Query, FiltersByBinaryOutput) {
    expect_found({nullptr, nullptr, nullptr, nullptr, "true"}, {0, 1, 5, 6, 7});
    expect_found({nullptr, nullptr, nullptr, nullptr, "false"}, {2, 3, 4});
    for (const char* const text :
         {"", "TRUE", "False", "1", "0", "yes", "true ", " true", "tru", "truer", "fals", "falsey"})
        expect_found({nullptr, nullptr, nullptr, nullptr, text}, {});
}

TEST_F(Query, FiltersByTheLowestAcceptableVersion) {
    struct Row {
        unsigned int version;
        Ids expected;
    };
    const Row rows[] = {
        {0, {0, 1, 2, 3, 4, 5, 6, 7}},
        {1, {0, 1, 2, 3, 4, 5, 6, 7}},
        {200, {0, 1, 2, 3, 4, 5, 6, 7}},
        {201, {2, 3, 4, 5, 6, 7}},
        {300, {2, 3, 4, 5, 6, 7}},
        {301, {2, 3, 4}},
        // The core of compiler 4 stops at 310.
        {310, {2, 3, 4}},
        {311, {2, 3}},
        {320, {2, 3}},
        {321, {}},
        {INT_MAX, {}},
        {INT_MAX + 1u, {}},
        {UINT_MAX, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.version);
        expect_found({nullptr, nullptr, nullptr, nullptr, nullptr, row.version}, row.expected);
    }
}

TEST_F(Query, EveryFilterHasToPass) {
    expect_found({NEWEST, "Vexa-K460", "r1p0_00rel0", "openglessl", "false", 320}, {3});
    expect_found({NEWEST, "Vexa-K460", "r1p0_00rel0", "opencl", "true", 200}, {0});
    // One filter less each time, then another value for it.
    expect_found({nullptr, "Vexa-K460", "r1p0_00rel0", "openglessl", "false", 320}, {3});
    expect_found({OLDEST, "Vexa-K460", "r1p0_00rel0", "openglessl", "false", 320}, {});
    expect_found({NEWEST, nullptr, "r1p0_00rel0", "openglessl", "false", 320}, {3});
    expect_found({NEWEST, "Vexa-K580", "r1p0_00rel0", "openglessl", "false", 320}, {});
    expect_found({NEWEST, "Vexa-K460", nullptr, "openglessl", "false", 320}, {3});
    expect_found({NEWEST, "Vexa-K460", "r0p0_00rel0", "openglessl", "false", 320}, {});
    expect_found({NEWEST, "Vexa-K460", "r1p0_00rel0", nullptr, "false", 320}, {3});
    expect_found({NEWEST, "Vexa-K460", "r1p0_00rel0", "opencl", "false", 320}, {});
    expect_found({NEWEST, "Vexa-K460", "r1p0_00rel0", nullptr, nullptr, 200}, {0, 3});
    expect_found({NEWEST, "Vexa-K460", "r1p0_00rel0", "openglessl", "true", 320}, {});
    expect_found({NEWEST, "Vexa-K460", "r1p0_00rel0", "openglessl", "false", 321}, {});
    expect_found({nullptr, "Vexa-K460", "r1p0_00rel0", nullptr, nullptr, 0}, {0, 3, 5});
    expect_found({OLDEST, nullptr, "r0p0_00rel0", "openglessl", "true", 300}, {6, 7});
}

TEST_F(Query, ZeroMatchesGiveAnEmptyArray) {
    unsigned int none = 0;
    unsigned int* ids = &none;
    unsigned int count = 7;
    EXPECT_EQ(stderr_of([&] {
                  vexacm_get_compilers(&ids, &count, "none", nullptr, nullptr, nullptr, nullptr, 0);
              }),
              "");
    EXPECT_NE(ids, nullptr);
    EXPECT_NE(ids, &none);
    EXPECT_EQ(count, 0u);
    vexacm_release_compilers(&ids, count);
    EXPECT_EQ(ids, nullptr);
}

TEST_F(Query, NullOutputsAreToldAndNothingIsWritten) {
    unsigned int none = 0;
    unsigned int* ids = &none;
    unsigned int count = 7;
    EXPECT_EQ(stderr_of([&] {
                  vexacm_get_compilers(&ids, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                       0);
              }),
              NULL_INPUTS);
    EXPECT_EQ(stderr_of([&] {
                  vexacm_get_compilers(nullptr, &count, nullptr, nullptr, nullptr, nullptr, nullptr,
                                       0);
              }),
              NULL_INPUTS);
    EXPECT_EQ(stderr_of([&] {
                  vexacm_get_compilers(nullptr, nullptr, "none", "none", "none", "none", "none", 1);
              }),
              NULL_INPUTS);
    EXPECT_EQ(ids, &none);
    EXPECT_EQ(count, 7u);
}

TEST_F(Query, ReleasingANullArrayStoresNull) {
    unsigned int* ids = nullptr;
    EXPECT_EQ(stderr_of([&] {
                  vexacm_release_compilers(&ids, 0);
                  vexacm_release_compilers(&ids, 5);
              }),
              "");
    EXPECT_EQ(ids, nullptr);
}

TEST_F(Query, TheCountIsNotUsedByTheRelease) {
    for (const unsigned int count : {0u, 3u, UINT_MAX}) {
        unsigned int* ids = nullptr;
        unsigned int true_count = 0;
        vexacm_get_compilers(&ids, &true_count, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
        EXPECT_EQ(stderr_of([&] { vexacm_release_compilers(&ids, count); }), "");
        EXPECT_EQ(ids, nullptr);
    }
}

TEST_F(Query, EveryCallHandsOutAnArrayOfItsOwn) {
    unsigned int* first = nullptr;
    unsigned int* second = nullptr;
    unsigned int count = 0;
    vexacm_get_compilers(&first, &count, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
    vexacm_get_compilers(&second, &count, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
    EXPECT_NE(first, second);
    first[0] = 99;
    EXPECT_EQ(second[0], 0u);
    vexacm_release_compilers(&first, count);
    EXPECT_EQ(second[7], 7u);
    vexacm_release_compilers(&second, count);
}

TEST_F(Query, TextsStayTheSameAndWhereTheyAre) {
    const char* (*const getters[])(unsigned int) = {vexacm_get_driver_name, vexacm_get_core_name,
                                                    vexacm_get_core_revision, vexacm_get_api_name,
                                                    vexacm_get_extensions};
    std::vector<const char*> texts;
    std::vector<std::string> copies;
    for (const auto getter : getters)
        for (unsigned int id = 0; id < 8; ++id) {
            texts.push_back(getter(id));
            copies.emplace_back(texts.back());
        }
    for (unsigned int id = 0; id < 8; ++id) {
        Outputs outputs;
        EXPECT_TRUE(outputs.compile(id < 2 ? Request("kernel").kernels({"k"}) : Request(), id));
    }
    expect_found({OLDEST}, {5, 6, 7});
    std::size_t next = 0;
    for (const auto getter : getters)
        for (unsigned int id = 0; id < 8; ++id, ++next) {
            EXPECT_EQ(getter(id), texts[next]);
            EXPECT_EQ(getter(id), copies[next]);
        }
}

TEST_F(Query, NeverCallsThePlugins) {
    plugins.take_log();
    EXPECT_EQ(stderr_of([] {
                  catalogue();
                  for (unsigned int id = 0; id < 8; ++id)
                      vexacm_get_extensions(id);
              }),
              "");
    EXPECT_EQ(plugins.take_log(), "");
}

} // namespace
