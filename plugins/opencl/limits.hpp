// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

// What clang does not limit itself and what would otherwise end in a stack overflow, in hours or
// without memory. Real kernels stay far below; more than this is an error in the source.
namespace opencl {

constexpr std::size_t STACK_SIZE = std::size_t{768} << 20U;

// Each "(" in an #if takes 520 bytes of stack.
constexpr std::size_t MAX_SOURCE_BYTES = std::size_t{1} << 20U;

// Tokens of the preprocessed source.
constexpr unsigned MAX_TOKENS = 400'000;

// Tokens without one of ; , { } among them, and "else" within a function. The parser takes up to
// 2 kB of stack for each, and time in the square of their number.
constexpr unsigned MAX_RUN = 20'000;
constexpr unsigned MAX_ELSES = 10'000;

// Tokens that macros expand to, those of the macros in them included. Long ones, such as texts,
// count as several.
constexpr std::size_t MAX_MACRO_TOKENS = 4'000'000;

// The same for those in #if.
constexpr std::size_t MAX_CONDITION_TOKENS = 200'000;

// Characters of a name. Messages repeat names.
constexpr unsigned MAX_NAME_LENGTH = 1000;

// Sum of the array indexes that initial values name, as in [5] = 1.
constexpr std::uint64_t MAX_DESIGNATED_ELEMENTS = 4'000'000;

// Levels of statements and expressions in each other; a + a + a has two. Code generation takes up
// to 1 kB of stack for each, and time in the square of their number.
constexpr unsigned MAX_DEPTH = 10'000;

// Bytes of all variables of a source together.
constexpr std::uint64_t MAX_OBJECT_BYTES = std::uint64_t{64} << 20U;

// Functions with a body. The translator's time grows with the square of their number.
constexpr std::size_t MAX_FUNCTIONS = 2'000;

// Levels of structures, arrays and pointers in each other. The translator walks all of them anew
// for each.
constexpr unsigned MAX_TYPE_DEPTH = 100;

// clang goes on after this many, but nobody reads on.
constexpr unsigned MAX_ERRORS = 100;

} // namespace opencl
