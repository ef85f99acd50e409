// SPDX-License-Identifier: MIT
#include "common/outputs.hpp"

#include <algorithm>

namespace plugin {
namespace {

char* copy_of(const std::string& text) {
    char* copy = new char[text.size() + 1];
    std::copy_n(text.c_str(), text.size() + 1, copy);
    return copy;
}

// The count goes up with every text and not at the end: a record that was cut
// short by std::bad_alloc can still be freed.
void hand_out_texts(const Texts& texts, std::uint32_t& count, char**& array) {
    if (texts.empty())
        return;
    array = new char*[texts.size()];
    for (const std::string& text : texts) {
        array[count] = copy_of(text);
        ++count;
    }
}

void take_back_texts(std::uint32_t count, char** array) noexcept {
    for (std::uint32_t i = 0; i < count; ++i)
        delete[] array[i];
    delete[] array;
}

void hand_out_table(const std::vector<Texts>& table, vexaoc_outputs& record) {
    if (table.empty())
        return;
    record.string_lists = new vexaoc_string_list[table.size()];
    for (const Texts& row : table) {
        vexaoc_string_list& list = record.string_lists[record.num_string_lists];
        list = {};
        ++record.num_string_lists;
        hand_out_texts(row, list.num_strings, list.strings);
    }
}

void hand_out_binary(const std::vector<std::uint8_t>& binary, vexaoc_outputs& record) {
    if (binary.empty())
        return;
    record.binary = new std::uint8_t[binary.size()];
    record.binary_size = static_cast<std::uint32_t>(binary.size());
    std::copy(binary.begin(), binary.end(), record.binary);
}

} // namespace

void hand_out(const Outputs& outputs, vexaoc_outputs& record) {
    hand_out_table(outputs.table, record);
    hand_out_binary(outputs.binary, record);
    hand_out_texts(outputs.errors, record.num_strings_a, record.strings_a);
    hand_out_texts(outputs.warnings, record.num_strings_b, record.strings_b);
}

void take_back(vexaoc_outputs& record) noexcept {
    for (std::uint32_t i = 0; i < record.num_string_lists; ++i)
        take_back_texts(record.string_lists[i].num_strings, record.string_lists[i].strings);
    delete[] record.string_lists;
    delete[] record.binary;
    take_back_texts(record.num_strings_a, record.strings_a);
    take_back_texts(record.num_strings_b, record.strings_b);
    record = {};
}

} // namespace plugin
