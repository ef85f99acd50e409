// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "vexaoc.h"

/// A list of texts; none stands for a null text.
using Texts = std::vector<std::optional<std::string>>;

/// All that a record of outputs can say.
struct Outputs_content {
    std::vector<Texts> lists;
    std::string binary;
    Texts a;
    Texts b;

    bool operator==(const Outputs_content& other) const {
        return lists == other.lists && binary == other.binary && a == other.a && b == other.b;
    }
};

/// A record as a plug-in would fill it, in memory of its own. Its padding holds
/// junk; lists without elements are null.
class Plugin_outputs {
public:
    explicit Plugin_outputs(const Outputs_content& content) {
        std::memset(&record, 0x5a, sizeof record);
        for (const Texts& texts : content.lists) {
            vexaoc_string_list list;
            std::memset(&list, 0x5a, sizeof list);
            list.num_strings = static_cast<std::uint32_t>(texts.size());
            list.strings = make_list(texts);
            lists.push_back(list);
        }
        record.num_string_lists = static_cast<std::uint32_t>(lists.size());
        record.string_lists = lists.empty() ? nullptr : lists.data();
        binary.assign(content.binary.begin(), content.binary.end());
        record.binary_size = static_cast<std::uint32_t>(binary.size());
        record.binary = binary.empty() ? nullptr : binary.data();
        record.num_strings_a = static_cast<std::uint32_t>(content.a.size());
        record.strings_a = make_list(content.a);
        record.num_strings_b = static_cast<std::uint32_t>(content.b.size());
        record.strings_b = make_list(content.b);
    }
    Plugin_outputs(const Plugin_outputs&) = delete;
    Plugin_outputs& operator=(const Plugin_outputs&) = delete;

    vexaoc_outputs record;

private:
    char** make_list(const Texts& texts) {
        std::vector<char*> pointers;
        for (const auto& text : texts) {
            strings.push_back(std::make_unique<std::string>(text.value_or("")));
            pointers.push_back(text ? strings.back()->data() : nullptr);
        }
        arrays.push_back(std::move(pointers));
        return texts.empty() ? nullptr : arrays.back().data();
    }

    std::vector<vexaoc_string_list> lists;
    std::vector<std::uint8_t> binary;
    std::vector<std::unique_ptr<std::string>> strings;
    std::vector<std::vector<char*>> arrays;
};

/// Reads a record back.
inline Texts texts_of(std::uint32_t count, char* const* strings) {
    Texts texts;
    for (std::uint32_t i = 0; i < count; ++i)
        texts.push_back(strings[i] ? std::optional<std::string>(strings[i]) : std::nullopt);
    return texts;
}

inline Outputs_content content_of(const vexaoc_outputs& record) {
    Outputs_content content;
    for (std::uint32_t i = 0; i < record.num_string_lists; ++i)
        content.lists.push_back(
            texts_of(record.string_lists[i].num_strings, record.string_lists[i].strings));
    content.binary.assign(record.binary, record.binary + record.binary_size);
    content.a = texts_of(record.num_strings_a, record.strings_a);
    content.b = texts_of(record.num_strings_b, record.strings_b);
    return content;
}

inline const std::string NULL_TEXT_ERROR = "Compiler Manager Error: NULL inputs to string_copy.\n";
