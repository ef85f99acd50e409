// SPDX-License-Identifier: MIT
#include "hostile.hpp"

namespace hostile {

namespace {

constexpr std::size_t MEBIBYTE = std::size_t{1} << 20;
constexpr unsigned MANY_CORES = 10000;
constexpr unsigned MANY_PAIRS = 1000;

/// A core for each number below MANY_CORES, no two of the same rank.
model::Core core(unsigned number) {
    const std::string build = std::to_string(100 + number % 100).substr(1);
    return {"k46x", "r" + std::to_string(number / 1000) + "p" + std::to_string(number / 100 % 10) +
                        "_" + build + "rel0"};
}

void append_many(Record& record, const Text& key, const Text& value) {
    for (unsigned i = 0; i < MANY_PAIRS; ++i)
        record.pair(key, value);
}

} // namespace

void lengthen(Dice& dice, unsigned number, Plugin& plugin, Case& that) {
    that.large = true;
    Record& record = plugin.records[0];
    Outcome outcome;
    // Around the size that stands for a mebibyte.
    const std::size_t size = MEBIBYTE - 2 + dice.below(4);
    const std::string text(size, static_cast<char>('a' + dice.below(26)));
    switch (number) {
    case 0:
        record.cores.elements[0].name = text;
        break;
    case 1:
        record.cores.elements[0].revision = text;
        break;
    case 2:
        record.cores.elements[0].revision = "r1p2_34rel5" + text;
        break;
    case 3:
        record.pair(text, "value");
        break;
    case 4:
        record.pair("key", text);
        break;
    case 5:
        record.pair(text, text);
        break;
    case 6:
        record.pair(plugin.api + "_extensions", text);
        break;
    case 7:
        record.pair("flexible_version", "2.3.4" + text);
        break;
    case 8:
        record.pair("flexible_version", "2.3" + text);
        break;
    case 9:
        record.pair("flexible_version", text);
        break;
    case 10:
        record.pair(plugin.api + "_version", std::string(text.size(), '0') + "321");
        break;
    case 11:
        record.pair(plugin.api + "_version", std::string(text.size(), ' ') + "321");
        break;
    case 12:
        record.pair(plugin.api + "_version", "1" + std::string(text.size(), '0'));
        break;
    case 13:
        record.pair(plugin.api + "_version", text);
        break;
    case 14:
        record.pair("compiler_type", text);
        break;
    case 15:
        record.pair("prerotate", text);
        break;
    case 16:
        outcome.a.elements = {text, "", text};
        break;
    case 17:
        outcome.b.elements = {text};
        break;
    case 18:
        outcome.lists.elements.resize(2);
        outcome.lists.elements[1].elements = {text};
        break;
    default:
        outcome.binary.elements.assign(text.begin(), text.end());
        outcome.says = {text};
        break;
    }
    plugin.outcomes = {outcome};
}

void multiply(Dice& dice, unsigned number, Plugin& plugin, Case& that) {
    that.large = true;
    Record& record = plugin.records[0];
    std::vector<model::Core>& cores = record.cores.elements;
    Outcome outcome;
    switch (number) {
    case 0: // all different, in no order
        cores.clear();
        for (unsigned i = 0; i < MANY_CORES; ++i)
            cores.push_back(core(i));
        for (unsigned i = MANY_CORES - 1; i > 0; --i)
            std::swap(cores[i], cores[dice.below(i + 1)]);
        break;
    case 1: // in the wrong order
        cores.clear();
        for (unsigned i = 0; i < MANY_CORES; ++i)
            cores.push_back(core(i));
        break;
    case 2: // all the same
        cores.assign(MANY_CORES, {"k52x", "r1p0_00rel0"});
        break;
    case 3: // one of them offered
        cores.assign(MANY_CORES, {"K350", "r1p0_00rel0"});
        cores[dice.below(MANY_CORES)] = {"k30x", "r1p0_00rel0"};
        break;
    case 4: // none of them offered
        cores.assign(MANY_CORES, {std::nullopt, std::nullopt});
        break;
    case 5: // for both languages
        cores.assign(MANY_CORES / 2, {"other", std::nullopt});
        record.pair("compiler_type", plugin.api);
        break;
    case 6:
        append_many(record, "compiler_type", plugin.api);
        break;
    case 7:
        append_many(record, "compiler_type", "vulkan");
        break;
    case 8:
        for (unsigned i = 0; i < MANY_PAIRS; ++i)
            record.pair(plugin.api + "_version", std::to_string(dice.below(1000)));
        break;
    case 9:
        append_many(record, plugin.api + "_version", "320");
        record.pair(plugin.api + "_version", "none");
        break;
    case 10:
        append_many(record, plugin.api + "_extensions", "GL_one_of_many");
        break;
    case 11:
        append_many(record, plugin.api + "_extensions", std::nullopt);
        break;
    case 12:
        append_many(record, "flexible_version", "3.2.1");
        break;
    case 13:
        append_many(record, "flexible_version", "none");
        break;
    case 14:
        append_many(record, "prerotate", "false");
        record.pair("prerotate", "true");
        append_many(record, "prerotate", "false");
        break;
    case 15:
        append_many(record, "unknown", "value");
        append_many(record, std::nullopt, std::nullopt);
        append_many(record, "undefine", "");
        append_many(record, "architecture", "");
        break;
    case 16:
        outcome.a.elements.assign(MANY_CORES, "error");
        outcome.b.elements.assign(MANY_CORES, "");
        break;
    case 17:
        outcome.a.elements.assign(MANY_PAIRS, std::nullopt);
        break;
    case 18:
        outcome.lists.elements.resize(MANY_PAIRS);
        for (Array<Text>& list : outcome.lists.elements)
            list.elements.assign(dice.below(10), "cell");
        break;
    default:
        outcome.binary.elements.assign(MEBIBYTE, '\x7f');
        break;
    }
    plugin.outcomes = {outcome};
}

} // namespace hostile
