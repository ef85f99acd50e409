// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "request.hpp"

/// What an input tells, line by line. A line is a directive and its fields with
/// '|' between them; in a field %XX is the byte with that number, and a lone
/// "-" is a null pointer where there can be one. What does not fit is passed
/// over: any input is a script.
///
///   record N            what follows is the record of capability call N, 2 or 3
///   api A|B|C           the interface version
///   core NAME|REVISION  one more core
///   pair KEY|VALUE      two texts, or
///   text TEXT           one, at the end of the entries
///   binary N, result N, num-cores N, num-entries N, null-cores, null-entries
///
///   outputs WORD        what follows is the outcome for sources with this word
///   a TEXT, b TEXT      one more text in strings_a, strings_b
///   list, item TEXT     one more string list; one more text in the last one
///   bytes TEXT, returns N, num-a N, num-b N, num-lists N, num-bytes N, num-items N,
///   null-a, null-b, null-lists, null-bytes, null-items
///
///   compile ID|TYPE|SOURCE|FLAGS  a request; flags: b, a binary; p, prerotated;
///                                 o, no outputs; n, -1 kernel names; d, -1 defines
///   kernel NAME, define TEXT      one more for the last request
class Script {
public:
    explicit Script(std::string_view input);

    /// Completes a plug-in that has one record.
    void steer(model::Plugin& plugin) const;

    std::vector<model::Compile> requests() const;

private:
    struct Line {
        std::string directive;
        std::vector<std::string> fields;

        model::Text text(std::size_t field) const;
        std::string word(std::size_t field) const { return text(field).value_or(""); }
        std::uint32_t number(std::size_t field) const;
    };

    std::vector<Line> lines;
};
