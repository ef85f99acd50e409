// SPDX-License-Identifier: MIT
#include "expanded_source.hpp"

#include "limits.hpp"

#include <algorithm>
#include <charconv>
#include <map>
#include <utility>

namespace glsl {
namespace {

constexpr std::string_view BLANKS = " \t\r\v\f";

bool is_word_character(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// Takes the next token off the front: a word, a number or one other character; "&&" is two.
std::string_view take_token(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    const auto* const end = std::find_if_not(text.begin(), text.end(), is_word_character);
    const auto word = static_cast<std::size_t>(end - text.begin());
    const std::string_view token = text.substr(0, std::max<std::size_t>(word, 1));
    text.remove_prefix(token.size());
    return token;
}

// Counts the members of each structure while the tokens pass by.
class Struct_counter {
public:
    void see(std::string_view token) {
        if (previous_ == "struct")
            name_ = token;
        if (token == "{" && !name_.empty())
            open_.push_back({std::exchange(name_, {}), 0, 1});
        else if (!open_.empty())
            see_inside(token);
        previous_ = token;
    }

    std::size_t largest() const { return largest_; }

private:
    struct Open_struct {
        std::string_view name;
        std::size_t members;
        std::size_t members_of_type; // of the declaration that is being read
    };

    void see_inside(std::string_view token) {
        Open_struct& current = open_.back();
        if (token == "}") {
            close();
        } else if (token == "," || token == ";") {
            current.members += current.members_of_type;
            if (token == ";")
                current.members_of_type = 1;
        } else if (const auto known = members_.find(token); known != members_.end()) {
            current.members_of_type = known->second;
        }
    }

    // Names of an inner scope are not told from those of an outer one: the larger counts.
    void close() {
        const Open_struct closed = open_.back();
        open_.pop_back();
        std::size_t& members = members_[closed.name];
        members = std::max(members, std::min(closed.members, MAX_STRUCT_MEMBERS + 1));
        largest_ = std::max(largest_, members);
        if (!open_.empty())
            open_.back().members_of_type = members;
    }

    std::map<std::string_view, std::size_t> members_;
    std::vector<Open_struct> open_;
    std::string_view name_;
    std::string_view previous_;
    std::size_t largest_ = 0;
};

int to_int(std::string_view token) {
    int number = 0;
    std::from_chars(token.data(), token.data() + token.size(), number);
    return number;
}

class Reader {
public:
    void read_line(std::string_view line) {
        std::string_view rest = line;
        if (take_token(rest) == "#")
            read_directive(rest);
        else
            read_code(line);
        ++line_;
    }

    Expanded_source result() {
        source_.largest_struct = structs_.largest();
        return std::move(source_);
    }

private:
    void read_directive(std::string_view rest) {
        const std::string_view directive = take_token(rest);
        if (directive == "extension")
            read_extension(rest);
        else if (directive == "line")
            read_line_number(rest);
    }

    void read_extension(std::string_view rest) {
        const std::string_view name = take_token(rest);
        take_token(rest); // the colon
        const std::string_view behavior = take_token(rest);
        std::string place = std::to_string(string_) + ":" + std::to_string(line_);
        source_.extensions.push_back({std::move(place), std::string(name), std::string(behavior)});
    }

    // The number is that of the following line.
    void read_line_number(std::string_view rest) {
        line_ = to_int(take_token(rest)) - 1;
        if (const std::string_view string = take_token(rest); !string.empty())
            string_ = to_int(string);
    }

    void read_code(std::string_view rest) {
        for (;;) {
            const std::string_view token = take_token(rest);
            if (token.empty())
                return;
            ++source_.tokens;
            structs_.see(token);
        }
    }

    Expanded_source source_;
    Struct_counter structs_;
    int string_ = 0;
    long long line_ = 1; // no #line may make it overflow
};

} // namespace

Expanded_source read_expanded(std::string_view text) {
    Reader reader;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size());
        reader.read_line(text.substr(0, length));
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return reader.result();
}

} // namespace glsl
