// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// What glslang does not limit itself and what would otherwise end in a stack overflow, in hours
// or without memory. Real shaders stay far below; more than this is an error in the source.
namespace glsl {

constexpr std::size_t STACK_SIZE = std::size_t{512} << 20U;

// Each "(" in an #if takes 208 bytes of stack.
constexpr std::size_t MAX_SOURCE_BYTES = std::size_t{1} << 20U;

// Tokens that are read from macros and their arguments, names of further macros included.
constexpr std::size_t MAX_MACRO_TOKENS = 500'000;

// Tokens of the preprocessed source. In a chain such as a + a + a each two of them add a level to
// the syntax tree, which takes up to 1 kB of stack.
constexpr std::size_t MAX_TOKENS = 400'000;

// Members of a structure, those of structures in it included. Types are walked member by member,
// and thirty structures of two of the former kind have 2^30.
constexpr std::size_t MAX_STRUCT_MEMBERS = 4096;

// Pairs of a function and another that it calls. Whether one calls itself in the end is looked for
// in time that grows with the square of their number.
constexpr std::size_t MAX_CALLS = 2'000;

// Elements of an input, output or uniform. Locations are given out one by one.
constexpr int MAX_INTERFACE_ELEMENTS = 65'536;

} // namespace glsl
