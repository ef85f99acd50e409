// SPDX-License-Identifier: MIT
//
// What the hardening flags made of the installed files. Fortified calls are not
// looked for: the library makes no call that has such a variant.
#include <cstring>
#include <iterator>
#include <sstream>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "built_file.hpp"
#include "vexacm.h"

namespace {

std::vector<std::string> split(const std::string& text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

class Hardening : public testing::TestWithParam<std::string> {};

TEST_P(Hardening, NothingIsWritableAndExecutable) {
    const std::string segments = output_of({"readelf", "-lW", GetParam()});
    EXPECT_FALSE(std::regex_search(segments, std::regex("LOAD .* RWE "))) << segments;
    EXPECT_TRUE(std::regex_search(segments, std::regex("GNU_STACK .* RW "))) << segments;
    const std::string dynamic = output_of({"readelf", "-dW", GetParam()});
    EXPECT_EQ(dynamic.find("TEXTREL"), std::string::npos) << dynamic;
}

TEST_P(Hardening, TablesOfAddressesAreFilledAndThenReadOnly) {
    const std::string dynamic = output_of({"readelf", "-dW", GetParam()});
    EXPECT_NE(dynamic.find("BIND_NOW"), std::string::npos) << dynamic;
    const std::string segments = output_of({"readelf", "-lW", GetParam()});
    EXPECT_TRUE(std::regex_search(segments, std::regex("GNU_RELRO .* R "))) << segments;
}

#ifdef HAS_STACK_PROTECTOR
TEST_P(Hardening, StacksAreGuarded) {
    const std::string imports = output_of({"nm", "-D", "--undefined-only", GetParam()});
    EXPECT_NE(imports.find(" __stack_chk_fail"), std::string::npos) << imports;
}
#endif

// By folder and file: the plug-ins of a driver have one file name.
INSTANTIATE_TEST_SUITE_P(Files, Hardening, testing::ValuesIn(split(HARDENED_FILES)),
                         [](const testing::TestParamInfo<std::string>& file) {
                             const std::regex last_two(".*/([^/]*/[^/]*)$");
                             const std::string name =
                                 std::regex_replace(file.param, last_two, "$1");
                             return std::regex_replace(name, std::regex("[^A-Za-z0-9]"), "");
                         });

// The note that a processor's checks go by is looked for in the objects: linkers
// drop it where one object lacks it, as the C library's start files may.
#ifdef HAS_CONTROL_FLOW_PROTECTION
TEST(ControlFlow, EveryUnitIsMarked) {
    const std::vector<std::string> objects = split(OBJECT_FILES);
    EXPECT_EQ(objects.size(), 5U);
    for (const std::string& object : objects)
        EXPECT_EQ(all_matches(output_of({"readelf", "-nW", object}), "(x86 feature: [^\n]*)"),
                  std::set<std::string>{"x86 feature: IBT, SHSTK"})
            << object;
}

TEST(ControlFlow, EveryExportedFunctionIsAPlaceToJumpTo) {
    vexacm_release_libraries(); // the library is linked, and stays so
    const std::set<std::string> functions = all_matches(
        output_of({"nm", "-D", "--defined-only", BUILD_DIRECTORY "/libcompiler_manager.so"}),
        " T (.*)\n");
    EXPECT_EQ(functions.size(), 15U);
    const unsigned char endbr64[] = {0xf3, 0x0f, 0x1e, 0xfa};
    for (const std::string& name : functions) {
        const void* const function = dlsym(RTLD_DEFAULT, name.c_str());
        ASSERT_NE(function, nullptr) << name;
        EXPECT_EQ(std::memcmp(function, endbr64, sizeof endbr64), 0) << name;
    }
}
#endif

} // namespace
