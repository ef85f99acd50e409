// SPDX-License-Identifier: MIT
#pragma once

#include "open_plugin.hpp"

// Opens the plug-in for this one compile.
Compiled compile(const Request& request);

// The errors of a source. Expects the request to be carried out, and a binary and a table when
// there are none.
Texts errors_of(const std::string& source);

// A source of that body.
std::string with_body(const std::string& body);

// A request for a file of the subject's directory, with the shader type of its ending.
Request request_for(const std::string& file);
Compiled compile_file(const std::string& file);

constexpr std::size_t MEBIBYTE = std::size_t{1} << 20U;

std::string repeat(const std::string& text, std::size_t times);

// "#define D0 text", then each macro two of the one before; 2^40 of them in the end.
std::string doubled(const std::string& text);
