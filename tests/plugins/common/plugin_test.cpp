// SPDX-License-Identifier: MIT
#include "plugin_test.hpp"

#include "plugin_directory.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

Compiled compile(const Request& request) {
    return compile(Open_plugin(), request);
}

Texts errors_of(const std::string& source) {
    const Compiled compiled = compile(Request(source));
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    EXPECT_EQ(compiled.errors.empty(), !compiled.binary.empty());
    EXPECT_EQ(compiled.errors.empty(), !compiled.table.empty());
    return compiled.errors;
}

std::string with_body(const std::string& body) {
    return SUBJECT.function + " { " + body + " }";
}

Request request_for(const std::string& file) {
    const std::string ending = file.substr(file.find('.') + 1);
    const std::string source = read_file(SUBJECT.directory + ("/" + file));
    if (source.empty())
        throw std::runtime_error("no source " + file);
    return Request(source, ending == "vert"   ? "vertex"
                           : ending == "frag" ? "fragment"
                           : ending == "comp" ? "compute"
                           : ending == "geom" ? "geometry"
                           : ending == "tesc" ? "tessellation_control"
                           : ending == "tese" ? "tessellation_evaluation"
                                              : "kernel");
}

Compiled compile_file(const std::string& file) {
    return compile(request_for(file));
}

std::string repeat(const std::string& text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

std::string doubled(const std::string& text) {
    std::string source = "#define D0 " + text + "\n";
    for (int i = 1; i <= 40; ++i) {
        const std::string former = " D" + std::to_string(i - 1);
        source += "#define D" + std::to_string(i) + former + former + "\n";
    }
    return source;
}
