// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <random>
#include <vector>

#include "description.hpp"

namespace model {

/// Chance, the same for a seed everywhere: the engine's numbers are laid down,
/// what the standard distributions make of them is not.
class Dice {
public:
    explicit Dice(unsigned seed) : engine(seed) {}

    /// From 0 to limit - 1.
    unsigned below(unsigned limit) { return static_cast<unsigned>(engine() % limit); }

    bool one_in(unsigned times) { return below(times) == 0; }

    std::string pick(std::initializer_list<const char*> texts) {
        return *(texts.begin() + below(static_cast<unsigned>(texts.size())));
    }

    /// A null among the texts is a null pointer.
    Text pick_text(std::initializer_list<const char*> texts) {
        const char* const text = *(texts.begin() + below(static_cast<unsigned>(texts.size())));
        return text ? Text(text) : std::nullopt;
    }

    template <class Element>
    const Element& pick(const std::vector<Element>& elements) {
        return elements[below(static_cast<unsigned>(elements.size()))];
    }

private:
    std::mt19937 engine;
};

} // namespace model
