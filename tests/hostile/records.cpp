// SPDX-License-Identifier: MIT
#include <limits>

#include "hostile.hpp"

namespace hostile {

namespace {

constexpr int INTS[] = {std::numeric_limits<int>::min(),
                        std::numeric_limits<int>::min() + 1,
                        -65536,
                        -256,
                        -4,
                        -1,
                        1,
                        2,
                        3,
                        4,
                        5,
                        255,
                        256,
                        65536,
                        std::numeric_limits<int>::max()};
constexpr unsigned NUM_INTS = sizeof INTS / sizeof *INTS;

constexpr std::uint32_t COUNTS[] = {1, 0x7fffffff, 0x80000000, 0xffffffff};

/// Every kind of output, for every source.
Outcome full_outcome() {
    Outcome outcome;
    Array<Text> list;
    list.elements = {"one", "", "three"};
    outcome.lists.elements = {list, {}, list};
    outcome.binary.elements = {'\0', '\xff', 'b'};
    outcome.a.elements = {"error", "#error cl_khr_fp64"};
    outcome.b.elements = {"warning", ""};
    return outcome;
}

void leave_extensions_to_probing(Plugin& plugin) {
    Array<Text>& entries = plugin.records[0].entries;
    for (std::size_t key = 0; key + 1 < entries.elements.size(); key += 2)
        if (entries.elements[key] == plugin.api + "_extensions") {
            const auto at = entries.elements.begin() + static_cast<std::ptrdiff_t>(key);
            entries.elements.erase(at, at + 2);
            entries.count.reset();
            return;
        }
}

template <class Element>
void nullify(Dice& dice, Array<Element>& array) {
    array.null = true;
    array.count = COUNTS[dice.below(4)];
}

/// No array but a count, a count of nothing, or one that leaves some out.
template <class Element>
void disagree(Dice& dice, Array<Element>& array) {
    switch (dice.below(4)) {
    case 0:
        nullify(dice, array);
        break;
    case 1:
        array.count = 0;
        break;
    case 2:
        array.count = dice.below(static_cast<unsigned>(array.elements.size()) + 1);
        break;
    default:
        break;
    }
}

/// Fewer than that many bytes, any but NUL and "/".
std::string odd_bytes(Dice& dice, unsigned most) {
    std::string bytes;
    for (unsigned i = dice.below(most); i > 0; --i) {
        const char byte = static_cast<char>(1 + dice.below(255));
        bytes += byte == '/' ? '\n' : byte;
    }
    return bytes;
}

std::string odd_number(Dice& dice) {
    return dice.pick({"0",
                      "1",
                      "3",
                      "4",
                      "-1",
                      "+2",
                      " 3",
                      "00000000000000000001",
                      "2147483647",
                      "2147483648",
                      "-2147483648",
                      "-2147483649",
                      "4294967295",
                      "4294967296",
                      "4294967297",
                      "9223372036854775807",
                      "0x1",
                      "1e9",
                      "",
                      "\n1",
                      "99999999999",
                      "1\x01"});
}

/// As versions are written. One throw of the dice after the other: compilers
/// differ in the order in which they do what is in one expression.
std::string odd_version(Dice& dice, unsigned num_numbers) {
    std::string version = odd_number(dice);
    for (unsigned i = 1; i < num_numbers; ++i)
        version += "." + odd_number(dice);
    return version;
}

} // namespace

void spoil_results(Dice& dice, unsigned number, Plugin& plugin, Case& that) {
    const int result = INTS[number / 4 % NUM_INTS];
    plugin.outcomes = {full_outcome()};
    switch (number % 4) {
    case 0:
        plugin.records[0].result = result;
        break;
    case 1:
        plugin.records.resize(1);
        plugin.records.push_back(plugin.records[0]);
        plugin.records[1].from_call = 2;
        plugin.records[1].result = result;
        break;
    case 2:
        plugin.outcomes[0].result = result;
        if (dice.one_in(2))
            leave_extensions_to_probing(plugin);
        break;
    default:
        that.manners.push_back("release-result " + std::to_string(result));
        break;
    }
}

void spoil_pointers(Dice& dice, unsigned number, Plugin& plugin, Case&) {
    Record& record = plugin.records[0];
    Outcome outcome = full_outcome();
    if (number & 1)
        nullify(dice, record.cores);
    if (number & 2)
        for (model::Core& core : record.cores.elements)
            (dice.one_in(2) ? core.name : core.revision).reset();
    if (number & 4)
        for (unsigned i = 1 + dice.below(4); i > 0; --i)
            record.entries.elements[dice.below(6)].reset();
    if (number & 8) {
        nullify(dice, outcome.a);
        nullify(dice, dice.one_in(2) ? outcome.b : outcome.lists.elements[0]);
        nullify(dice, outcome.binary);
    }
    if (number & 16) {
        outcome.a.elements.insert(outcome.a.elements.begin(), 3, std::nullopt);
        outcome.lists.elements[dice.below(3)].elements.emplace_back();
    }
    if (number & 32) {
        nullify(dice, outcome.lists);
        if (dice.one_in(2))
            nullify(dice, record.entries);
    }
    plugin.outcomes = {outcome};
}

void spoil_counts(Dice& dice, unsigned number, Plugin& plugin, Case&) {
    Record& record = plugin.records[0];
    Outcome outcome = full_outcome();
    // A key that is cut off from its value, from the last to the first.
    if (number < 8)
        record.entries.count = 7 - number;
    else
        disagree(dice, record.cores);
    if (number >= 48)
        disagree(dice, record.entries);
    disagree(dice, outcome.lists);
    for (Array<Text>& list : outcome.lists.elements)
        disagree(dice, list);
    disagree(dice, outcome.binary);
    disagree(dice, outcome.a);
    disagree(dice, outcome.b);
    record.binary = COUNTS[dice.below(4)];
    plugin.outcomes = {outcome};
}

void spoil_versions(Dice& dice, unsigned number, Plugin& plugin, Case&) {
    Record& record = plugin.records[0];
    switch (number % 4) {
    case 0: {
        constexpr std::uint32_t majors[] = {
            0, 2, 255, 256, 257, 65537, 0x80000001, 0xffffffff, 0x01000000, 0x00010001, 1, 1};
        plugin.version[0] = majors[number / 4 % 12];
        plugin.version[1] = COUNTS[dice.below(4)];
        plugin.version[2] = COUNTS[dice.below(4)];
        break;
    }
    case 1:
        record.pair("flexible_version", odd_version(dice, 3));
        break;
    case 2: {
        const std::string numbers = "3." + odd_version(dice, 2);
        record.pair("flexible_version", numbers + odd_bytes(dice, 3));
        break;
    }
    default: {
        const std::string number_text = odd_number(dice);
        record.pair(plugin.api + "_version", number_text + odd_bytes(dice, 3));
        break;
    }
    }
}

void spoil_bytes(Dice& dice, unsigned number, Plugin& plugin, Case&) {
    Record& record = plugin.records[0];
    if (number % 4 == 0) {
        // Short enough for its steering file's name, which is longer.
        plugin.file_name = odd_bytes(dice, 200) + ".so";
        plugin.file_name += odd_bytes(dice, 40);
    } else if (number % 4 == 1) {
        plugin.file_name = "libVexa-K300";
        for (const char* const delimiter : {"_r", "p", "-", "rel"})
            plugin.file_name += delimiter + odd_number(dice);
        plugin.file_name += odd_bytes(dice, 3) + ".so";
    }
    for (unsigned i = dice.below(4); i > 0; --i)
        record.cores.elements.push_back({odd_bytes(dice, 12), odd_bytes(dice, 12)});
    record.cores.elements.push_back({"Vexa-" + odd_bytes(dice, 5), "r" + odd_bytes(dice, 8)});
    const std::string key = odd_bytes(dice, 300);
    record.pair(key, odd_bytes(dice, 300));
    record.pair(plugin.api + "_extensions", odd_bytes(dice, 300));
    if (dice.one_in(3))
        record.pair("compiler_type", odd_bytes(dice, 10));
    Outcome outcome = full_outcome();
    for (Text& text : outcome.a.elements)
        text = odd_bytes(dice, 300);
    std::string bytes = odd_bytes(dice, 300) + '\0';
    bytes += odd_bytes(dice, 300);
    outcome.binary.elements.assign(bytes.begin(), bytes.end());
    plugin.outcomes = {outcome};
    plugin.say_on_load = odd_bytes(dice, 20);
}

void spoil_second_record(Dice& dice, unsigned number, Plugin& plugin, Case&) {
    plugin.records.resize(1);
    for (unsigned call = 2; call <= 3; ++call) {
        Record changed = plugin.records[0];
        changed.from_call = call;
        std::vector<Text>& texts = changed.entries.elements;
        switch ((number + 3 * call) % 8) {
        case 0:
            changed.entries = {};
            break;
        case 1:
            nullify(dice, changed.entries);
            break;
        case 2:
            changed.pair("flexible_version", odd_version(dice, 2));
            break;
        case 3:
            changed.pair("flexible_version", "9." + odd_number(dice) + ".9");
            break;
        case 4:
            changed.pair(plugin.api + "_version", odd_number(dice));
            break;
        case 5:
            disagree(dice, changed.cores);
            for (model::Core& core : changed.cores.elements)
                core.name = odd_bytes(dice, 6);
            break;
        case 6:
            texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(dice.below(6)));
            changed.entries.count.reset();
            break;
        default:
            texts[1] = plugin.api == "opencl" ? "openglessl" : "opencl";
            changed.binary = 1;
            changed.result = dice.one_in(2) ? 0 : INTS[dice.below(NUM_INTS)];
            break;
        }
        plugin.records.push_back(changed);
    }
}

void spoil_outputs(Dice& dice, unsigned number, Plugin& plugin, Case&) {
    // One outcome for each source that requests are made with, and the first
    // that is found stands for several.
    for (const char* const word : {"ALPHA", "BETA", "GL_EXT_", "cl_khr_", "{}", ""}) {
        Outcome outcome = full_outcome();
        outcome.word = word;
        outcome.result = dice.one_in(4) ? INTS[dice.below(NUM_INTS)] : 0;
        for (unsigned i = dice.below(4 + number); i > 0; --i)
            outcome.lists.elements.push_back(outcome.lists.elements[dice.below(3)]);
        for (unsigned i = dice.below(4 + number); i > 0; --i)
            outcome.a.elements.push_back(dice.one_in(5) ? Text() : odd_bytes(dice, 60));
        const std::string bytes(dice.below(5000), '\xee');
        outcome.binary.elements.assign(bytes.begin(), bytes.end());
        if (dice.one_in(3))
            disagree(dice, outcome.a);
        if (dice.one_in(3))
            disagree(dice, outcome.lists);
        outcome.says = {"compiling " + odd_bytes(dice, 20)};
        plugin.outcomes.push_back(outcome);
    }
    if (dice.one_in(2))
        leave_extensions_to_probing(plugin);
    plugin.records[0].pair("prerotate", "true");
}

void spoil_several(Dice& dice, unsigned number, Plugin& plugin, Case& that) {
    // Later ones overwrite outcomes of earlier ones, and add to their records.
    const std::vector<Family> small = {families()[2], families()[3], families()[4], families()[6],
                                       families()[5], families()[0], families()[1]};
    for (unsigned i = 2 + number % 3; i > 0; --i) {
        const Family& family = dice.pick(small);
        family.spoil(dice, dice.below(family.count), plugin, that);
    }
}

} // namespace hostile
