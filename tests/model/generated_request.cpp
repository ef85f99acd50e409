// SPDX-License-Identifier: MIT
#include "generator.hpp"

namespace model {

namespace {

/// A filter that is met, is nearly met or lets all pass.
Text filter(Dice& dice, const std::string& value) {
    switch (dice.below(12)) {
    case 0:
        return value + dice.pick({" ", "x", "\n"});
    case 1:
        return value.substr(0, value.size() / 2);
    case 2:
        return "";
    case 3:
    case 4:
    case 5:
        return value;
    default:
        return std::nullopt;
    }
}

/// Some compiler; a made-up one where there is none.
Entry some_entry(Dice& dice, const Catalogue* catalogue) {
    if (catalogue && !catalogue->entries.empty())
        return dice.pick(catalogue->entries);
    Entry entry = {};
    entry.driver_name = "Vexa-K300_r5p0-06rel0";
    entry.core_name = "Vexa-K460";
    entry.api_name = "openglessl";
    return entry;
}

List_compilers generate_list(Dice& dice, const Entry& entry) {
    List_compilers list;
    list.driver_name = filter(dice, entry.driver_name);
    list.core_name =
        dice.one_in(10) ? Text(entry.reported_core_name) : filter(dice, entry.core_name);
    list.core_revision = filter(dice, entry.core_revision);
    list.api_name = filter(dice, entry.api_name);
    if (dice.one_in(2))
        list.binary_output = dice.pick({"true", "false", "TRUE", "1", "", "true "});
    const std::vector<unsigned> versions = {0,
                                            0,
                                            310,
                                            320,
                                            321,
                                            4294967295,
                                            entry.highest_version,
                                            entry.highest_version + 1,
                                            entry.highest_version - 1};
    list.version = dice.pick(versions);
    list.null_compilers = dice.one_in(20);
    list.null_count = dice.one_in(20);
    return list;
}

std::vector<std::string> names(Dice& dice, int count) {
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i)
        names.push_back(dice.pick({"k", "main", "", "A=1", "B", "-D X=%\xc3\xa9"}));
    return names;
}

Compile generate_compile(Dice& dice, const Entry& entry, unsigned id) {
    Compile compile;
    compile.id = id;
    compile.null_outputs = dice.one_in(30);
    compile.source =
        dice.pick_text({"ALPHA", "BETA", "GAMMA", "void main() {}", "", "BETA ALPHA",
                        " a\tb\n%GAMMA", "\xc3\xa9 GL_OES", "#version 100\nx", "alpha"});
    if (dice.one_in(30))
        compile.source.reset();
    const bool kernel = entry.api_name == "opencl" ? !dice.one_in(4) : dice.one_in(8);
    if (kernel)
        compile.shader_type = "kernel";
    else
        compile.shader_type =
            dice.pick({"fragment", "fragment", "vertex", "compute", "geometry", "geometry",
                       "tessellation_control", "tessellation_evaluation"});
    if (dice.one_in(12))
        compile.shader_type = dice.pick_text(
            {nullptr, "", "Fragment", "vertex ", "kernels", "kern", "tessellation", "com%pute"});
    compile.num_kernel_names = static_cast<int>(dice.below(3)) - (dice.one_in(4) ? 2 : 0);
    if (!kernel && dice.one_in(2))
        compile.num_kernel_names = 0;
    compile.kernel_names = names(dice, compile.num_kernel_names);
    // Only kernels need their names to be there.
    if (compile.shader_type != Text("kernel") && dice.one_in(2))
        compile.kernel_names.clear();
    compile.num_defines = static_cast<int>(dice.below(4)) - (dice.one_in(4) ? 3 : 0);
    compile.defines = names(dice, compile.num_defines);
    compile.binary_output = dice.one_in(2);
    compile.prerotate = dice.one_in(3);
    return compile;
}

Request generate_early_request(Dice& dice) {
    switch (dice.below(10)) {
    case 0:
        return Manager_version();
    case 1:
        return Release_list();
    case 2:
        return Release_outputs();
    case 3:
        return generate_list(dice, some_entry(dice, nullptr));
    case 4:
        return generate_compile(dice, some_entry(dice, nullptr), 0);
    case 5:
        return Release();
    default:
        return Ask{static_cast<Property>(dice.below(8)), 0};
    }
}

} // namespace

Request generate_request(Dice& dice, const Manager& model) {
    const Catalogue* const catalogue = model.compilers();
    if (!catalogue)
        return generate_early_request(dice);
    // An initialisation that throws leaves the compilers as they were; one that
    // does not would leave them for good, which leak checks take amiss.
    if (dice.one_in(12) && model.initialising_throws())
        return Initialise();
    if (dice.one_in(20))
        return Release_list();
    if (dice.one_in(20))
        return Manager_version();
    if (dice.one_in(4) || catalogue->entries.empty())
        return generate_list(dice, some_entry(dice, catalogue));
    const unsigned id = dice.below(static_cast<unsigned>(catalogue->entries.size()));
    if (dice.one_in(5))
        return Ask{dice.one_in(2) ? Property::extensions : static_cast<Property>(dice.below(8)),
                   id};
    return generate_compile(dice, catalogue->entries[id], id);
}

Request plain_compile(const std::string& api_name, unsigned id) {
    Compile compile;
    compile.source = "void main() {}";
    compile.shader_type = api_name == "opencl" ? "kernel" : "fragment";
    if (api_name == "opencl") {
        compile.kernel_names = {"main"};
        compile.num_kernel_names = 1;
    }
    compile.id = id;
    return compile;
}

} // namespace model
