// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>
#include <vexacm.hpp>

namespace vexacm_tool {

/// An option with a text, which may be empty; the parser's own optional texts
/// take the empty text for none.
CLI::Option* add_text(CLI::App& command, const std::string& name, std::optional<std::string>& text,
                      const std::string& description);

/// A check for one of these words. It does not add them to the help, where they
/// stand in the description: a line has 80 columns.
CLI::Validator one_of(const std::vector<std::string>& words);

/// An option with a decimal number; the parser's own numbers may be octal.
CLI::Option* add_number(CLI::App& command, const std::string& name, unsigned int& number,
                        const std::string& description);

/// The arguments in the order that the parser takes them in, with the empty text
/// after each "--name=": the parser would take the next argument for the value.
std::vector<std::string> arguments_last_first(int argc, char** argv);

/// The options that choose compilers.
void add_filters(CLI::App& command, vexacm::Filters& filters);

/// The same, not in the help, which then refers to that of list: they are the same
/// everywhere, and a screen has 24 lines.
void add_hidden_filters(CLI::App& command, vexacm::Filters& filters);

} // namespace vexacm_tool
