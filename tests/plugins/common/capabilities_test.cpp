// SPDX-License-Identifier: MIT
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

TEST(Capabilities, InterfaceVersionIsTheHeaders) {
    const Open_plugin plugin;
    vexaoc_api_version version = {9, 9, 9};
    plugin.get_api_version(&version);
    EXPECT_EQ(version.major, std::uint32_t{VEXAOC_API_VERSION_MAJOR});
    EXPECT_EQ(version.minor, std::uint32_t{VEXAOC_API_VERSION_MINOR});
    EXPECT_EQ(version.patch, std::uint32_t{VEXAOC_API_VERSION_PATCH});
}

TEST(Capabilities, EveryKnownCoreIsReportedOnce) {
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

TEST(Capabilities, EntriesNameVersionsAndNoExtensions) {
    const Open_plugin plugin;
    vexaoc_capabilities record = {};
    ASSERT_EQ(plugin.get_capabilities(&record), 0);
    EXPECT_EQ(Texts(record.entries, record.entries + record.num_entries), SUBJECT.entries);
    plugin.release_capabilities(&record);
}

TEST(Capabilities, SecondAnswerIsTheSame) {
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

TEST(Capabilities, EachReportedCoreCompiles) {
    const Open_plugin plugin;
    for (const char* core : {"k30x", "k32x", "k42x", "k46x", "k52x", "k53x", "k56x", "k58x"}) {
        Request request(with_body(""));
        request.core = core;
        EXPECT_EQ(compile(plugin, request).result, VEXAOC_SUCCESS) << core;
    }
}

TEST(Capabilities, CoreOrRevisionNotReportedIsRefused) {
    Request core(with_body(""));
    core.core = "k10x";
    EXPECT_EQ(compile(core).result, VEXAOC_CORE_NOT_SUPPORTED);
    Request revision(with_body(""));
    revision.revision = "r1p0_00rel0";
    EXPECT_EQ(compile(revision).result, VEXAOC_CORE_NOT_SUPPORTED);
}

} // namespace
