// SPDX-License-Identifier: MIT
#include "opencl_test.hpp"

#include <gtest/gtest.h>

namespace {

TEST(Opencl_capabilities, InterfaceVersionIsTheHeaders) {
    const Open_plugin plugin;
    vexaoc_api_version version = {9, 9, 9};
    plugin.get_api_version(&version);
    EXPECT_EQ(version.major, std::uint32_t{VEXAOC_API_VERSION_MAJOR});
    EXPECT_EQ(version.minor, std::uint32_t{VEXAOC_API_VERSION_MINOR});
    EXPECT_EQ(version.patch, std::uint32_t{VEXAOC_API_VERSION_PATCH});
}

TEST(Opencl_capabilities, EveryKnownCoreIsReportedOnce) {
    const Open_plugin plugin;
    vexaoc_capabilities record = {};
    ASSERT_EQ(plugin.get_capabilities(&record), 0);
    Texts cores;
    for (std::uint32_t i = 0; i < record.num_cores; ++i)
        cores.push_back(std::string(record.cores[i].core_name) + " " +
                        record.cores[i].core_revision);
    const Texts expected = {"k30x r0p0_00rel0", "k32x r0p0_00rel0", "k42x r0p0_00rel0",
                            "k46x r0p0_00rel0", "k52x r0p0_00rel0", "k53x r0p0_00rel0",
                            "k56x r0p0_00rel0", "k58x r0p0_00rel0"};
    EXPECT_EQ(cores, expected);
    EXPECT_EQ(record.binary_output_supported, 1U);
    plugin.release_capabilities(&record);
}

TEST(Opencl_capabilities, EntriesNameVersionsAndNoExtensions) {
    const Open_plugin plugin;
    vexaoc_capabilities record = {};
    ASSERT_EQ(plugin.get_capabilities(&record), 0);
    const Texts entries(record.entries, record.entries + record.num_entries);
    const Texts expected = {"compiler_type",    "opencl", //
                            "opencl_version",   "100",    //
                            "opencl_version",   "110",    //
                            "opencl_version",   "120",    //
                            "opencl_version",   "200",    //
                            "opencl_version",   "300",    //
                            "flexible_version", "1.0.0",  //
                            "prerotate",        "false"};
    EXPECT_EQ(entries, expected);
    plugin.release_capabilities(&record);
}

TEST(Opencl_capabilities, SecondAnswerIsTheSame) {
    const Open_plugin plugin;
    vexaoc_capabilities first = {};
    vexaoc_capabilities second = {};
    ASSERT_EQ(plugin.get_capabilities(&first), 0);
    ASSERT_EQ(plugin.get_capabilities(&second), 0);
    plugin.release_capabilities(&first);
    EXPECT_EQ(first.num_cores, 0U);
    EXPECT_EQ(second.num_cores, 8U);
    EXPECT_STREQ(second.cores[7].core_name, "k58x");
    plugin.release_capabilities(&second);
}

TEST(Opencl_capabilities, EachReportedCoreCompiles) {
    const Open_plugin plugin;
    for (const char* core : {"k30x", "k32x", "k42x", "k46x", "k52x", "k53x", "k56x", "k58x"}) {
        Request request("kernel void k() {}");
        request.core = core;
        EXPECT_EQ(compile(plugin, request).result, VEXAOC_SUCCESS) << core;
    }
}

TEST(Opencl_capabilities, CoreOrRevisionNotReportedIsRefused) {
    Request core("kernel void k() {}");
    core.core = "k10x";
    EXPECT_EQ(compile(core).result, VEXAOC_CORE_NOT_SUPPORTED);
    Request revision("kernel void k() {}");
    revision.revision = "r1p0_00rel0";
    EXPECT_EQ(compile(revision).result, VEXAOC_CORE_NOT_SUPPORTED);
}

} // namespace
