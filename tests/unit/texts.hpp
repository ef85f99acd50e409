// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

/// The pieces that test texts are made of: single characters or whole words.
using Pieces = std::vector<std::string>;

/// Under sanitizers everything takes ten times as long.
#ifdef SANITIZED
constexpr std::size_t LENGTH_CUT = 1;
constexpr int COUNT_CUT = 10;
#else
constexpr std::size_t LENGTH_CUT = 0;
constexpr int COUNT_CUT = 1;
#endif

/// Calls visit(text) for `beginning` and every text that at most `most` pieces
/// behind it make.
template <class Visit>
void for_each_text(const Pieces& pieces, std::size_t most, const Visit& visit,
                   const std::string& beginning = "") {
    visit(beginning);
    if (most == 0)
        return;
    for (const std::string& piece : pieces)
        for_each_text(pieces, most - 1, visit, beginning + piece);
}

/// Random texts, the same ones in every run.
class Random_texts {
public:
    std::size_t below(std::size_t limit) { return numbers() % limit; }

    std::string text(const Pieces& pieces, std::size_t most) {
        std::string made;
        for (std::size_t count = below(most + 1); count > 0; --count)
            made += pieces[below(pieces.size())];
        return made;
    }

private:
    std::mt19937 numbers;
};

/// Gathers the inputs that came out differently: one check for millions.
class Differences {
public:
    void add(const std::string& difference) {
        if (text.size() < 2000)
            text += difference + "\n";
    }
    const std::string& found() const { return text; }

private:
    std::string text;
};
