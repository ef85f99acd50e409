// SPDX-License-Identifier: MIT
// The copy of a plug-in's outputs and its release beside new[], memcpy and
// delete[] of the same.
#include <cstring>
#include <string>
#include <vector>

#include "paired.hpp"
#include "vexacm_internal_compiler.hpp"

namespace {

using VexaCM::Vexacm_internal_compiler;

void copy_and_release(const vexaoc_outputs& source) {
    vexaoc_outputs copy = {};
    Vexacm_internal_compiler::copy_compiler_outputs(&copy, &source);
    paired::keep(copy);
    Vexacm_internal_compiler::release_compiler_outputs(&copy);
}

void binary_by_hand(const vexaoc_outputs& source) {
    auto* const copy = new std::uint8_t[source.binary_size];
    std::memcpy(copy, source.binary, source.binary_size);
    paired::keep(copy);
    delete[] copy;
}

void strings_by_hand(const vexaoc_outputs& source) {
    auto** const copies = new char*[source.num_strings_a];
    for (std::uint32_t i = 0; i < source.num_strings_a; ++i) {
        const std::size_t size = std::strlen(source.strings_a[i]) + 1;
        copies[i] = new char[size];
        std::memcpy(copies[i], source.strings_a[i], size);
    }
    paired::keep(copies);
    for (std::uint32_t i = 0; i < source.num_strings_a; ++i)
        delete[] copies[i];
    delete[] copies;
}

} // namespace

int main() {
    for (const std::uint32_t size : {1U << 10, 1U << 20, 1U << 26}) {
        std::vector<std::uint8_t> binary(size, 1);
        vexaoc_outputs outputs = {};
        outputs.binary_size = size;
        outputs.binary = binary.data();
        paired::compare("binary", size, paired::slice_of([&] { copy_and_release(outputs); }),
                        paired::slice_of([&] { binary_by_hand(outputs); }), 1);
    }

    std::vector<std::string> texts;
    for (int i = 0; i < 1000; ++i)
        texts.push_back("shader.frag:" + std::to_string(i) + ": 'colour' : undeclared identifier");
    std::vector<char*> strings;
    for (std::string& text : texts)
        strings.push_back(text.data());
    vexaoc_outputs outputs = {};
    outputs.num_strings_a = static_cast<std::uint32_t>(strings.size());
    outputs.strings_a = strings.data();
    paired::compare("strings", static_cast<double>(strings.size()),
                    paired::slice_of([&] { copy_and_release(outputs); }),
                    paired::slice_of([&] { strings_by_hand(outputs); }), 1);
}
