// SPDX-License-Identifier: MIT
#include "generator.hpp"

namespace model {

namespace {

std::string number(Dice& dice) {
    if (!dice.one_in(6))
        return dice.pick({"0", "1", "4", "5"});
    return dice.pick({"05", "10", "+5", "-1", "-3", " 5", "", "x", "5x", "0x5", "2147483647",
                      "2147483648", "-2147483648", "99999999999", "-00000000000000003"});
}

std::string broken(Dice& dice, const char* delimiter) {
    return dice.one_in(30) ? dice.pick({"", "_", "r", "P", "p", "-", "rel", "_r"}) : delimiter;
}

std::string driver_name(Dice& dice) {
    std::string name = dice.one_in(15) ? dice.pick({"", "vexa-", "Vexa_", "Vexa"}) : "Vexa-";
    name += dice.one_in(8) ? dice.pick({"", "K30", "K3000", "K460", "k300", "K300_", "lib"})
                           : dice.pick({"K300", "K300", "K300", "200"});
    name += broken(dice, "_r");
    name += number(dice);
    name += broken(dice, "p");
    name += number(dice);
    name += broken(dice, "-");
    name += dice.one_in(3) ? number(dice) : dice.pick({"06", "07", "6"});
    name += broken(dice, "rel");
    return name + number(dice);
}

/// What a plug-in that is not used from its file on is like.
void spoil(Dice& dice, Plugin& plugin) {
    using Kind = Plugin::Kind;
    const std::vector<Kind> kinds = {Kind::lacks_a_function, Kind::lacks_a_function,
                                     Kind::lacks_a_library,  Kind::text,
                                     Kind::folder,           Kind::dangling};
    plugin.kind = dice.pick(kinds);
    plugin.missing_function = dice.pick({"get_api_version", "compile", "release_outputs",
                                         "get_capabilities", "release_capabilities"});
}

void generate_version(Dice& dice, Plugin& plugin) {
    if (dice.one_in(3)) {
        plugin.version[1] = dice.below(3);
        plugin.version[2] = 4294967295;
    }
    if (dice.one_in(20))
        plugin.version[0] = dice.one_in(2) ? 2 : dice.one_in(2) ? 0 : 4294967295;
}

bool is_taken(const std::vector<Plugin>& plugins, const Plugin& plugin) {
    for (const Plugin& other : plugins)
        if (other.api == plugin.api && other.file_name == plugin.file_name)
            return true;
    return false;
}

} // namespace

std::string generate_file_name(Dice& dice) {
    if (dice.one_in(12))
        return dice.pick({"a.sox", ".so", ".so.1", "x.so", "lib.so", "libx.so.1", "liblib.so",
                          "notes.so.txt", "so.so", "lib.so.so", "..so", "o.so.s", "lib .so",
                          "a lib.so b"});
    std::string name = dice.one_in(8) ? dice.pick({"", "liblib", "xlib", "Lib", "li"}) : "lib";
    name += driver_name(dice);
    name += dice.one_in(8) ? dice.pick({".so.1", ".sox", ".so.so", ".so.txt", "_so.so", ".so "})
                           : ".so";
    return name;
}

Directory generate_directory(Dice& dice) {
    Directory directory;
    directory.root = dice.pick({"", "", "/", "//"});
    directory.has_openglessl = !dice.one_in(12);
    directory.has_opencl = !dice.one_in(12);

    const unsigned count = dice.one_in(20) ? 0 : 1 + dice.below(6);
    for (unsigned i = 0; i < count; ++i) {
        Plugin plugin;
        plugin.api = dice.one_in(2) ? "openglessl" : "opencl";
        // One driver with a plug-in for each language.
        plugin.file_name = !directory.plugins.empty() && dice.one_in(3)
                               ? dice.pick(directory.plugins).file_name
                               : generate_file_name(dice);
        if (!directory.has(plugin.api) || is_taken(directory.plugins, plugin))
            continue;
        if (dice.one_in(12))
            spoil(dice, plugin);
        generate_version(dice, plugin);
        if (dice.one_in(3))
            plugin.say_on_load = dice.pick({"loaded", "", "a b%"}) + std::to_string(i);
        if (dice.one_in(3))
            plugin.say_on_unload = dice.pick({"unloaded", "", "-"}) + std::to_string(i);
        generate_records(dice, plugin);
        generate_outcomes(dice, plugin);
        directory.plugins.push_back(plugin);
    }
    return directory;
}

} // namespace model
