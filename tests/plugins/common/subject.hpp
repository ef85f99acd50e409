// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

using Texts = std::vector<std::string>;

// What the tests that hold for every plug-in have to know of theirs.
struct Subject {
    const char* file;
    Texts entries; // of the record of capabilities
    const char* shader_type;
    Texts other_shader_types;
    const char* other_api;

    // A source is the function and a body in braces; the statement is one that is right there.
    std::string function;
    std::string statement;
    std::string (*undeclared)(const std::string& name, int line); // the error, for a body's start
    std::string too_many_bytes;
    std::string too_many_macros;

    const char* directory; // of sources
    Texts clean_sources;
    const char* target_environment; // whose rules the binaries keep
    std::uint32_t newest_spirv;
    Texts noisy_sources; // that could make a compiler print something

    // A mebibyte of each text stands in each of the frames.
    Texts repeated;
    std::vector<std::pair<std::string, std::string>> frames;
};

// Each plug-in's folder defines its own.
extern const Subject SUBJECT;
