// SPDX-License-Identifier: MIT
#include "plugin_test.hpp"

#include <gtest/gtest.h>

namespace {

Texts errors_with(const std::string& key, const std::string& value, const std::string& source) {
    return compile(Request(source).with(key, value)).errors;
}

TEST(Options, DefinesLeaveTheVersionAlone) {
    EXPECT_EQ(errors_with("define", "VALUE=7", "#version 310 es\nvoid main() { x; }"),
              Texts{"ERROR: 0:2: 'x' : undeclared identifier"});
}

TEST(Options, DefineOfTheLanguagesOwnMacroIsAnError) {
    EXPECT_EQ(errors_with("define", "GL_ES=2", "void main() {}"),
              Texts{"ERROR: -1:1: '#define' : Macro redefined; different substitutions: GL_ES"});
}

TEST(Options, KernelNameIsIgnored) {
    const Compiled compiled = compile(Request("void main() {}").with("kernel_name", "blur"));
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    EXPECT_EQ(compiled.errors, Texts{});
}

} // namespace
