// SPDX-License-Identifier: MIT
#include "generator.hpp"

namespace model {

namespace {

/// A version that is no number ends everything, so most are.
Text version(Dice& dice) {
    if (!dice.one_in(5))
        return dice.pick({"100", "300", "310", "320", "320"});
    if (!dice.one_in(6))
        return dice.pick({" 310", "+300", "310abc", "310.5", "0", "200", "330", "\t320", "0x136",
                          "-1", "2147483647", "-2147483648", "319"});
    return dice.pick_text(
        {"abc", "99999999999", "", nullptr, "2147483648", "-2147483649", "  ", "+", "- 5", "x310"});
}

Text flexible_version(Dice& dice) {
    if (!dice.one_in(12))
        return dice.pick({"1.0.0", "2.5.7", "3.9.9", "3.1.0-beta", " 1. 2. 3", "01.2.3", "+1.2.3",
                          "1.0.0.0", "1.-2.-3", "3.4294967295.4294967296", "1.0.0 "});
    return dice.pick_text({"4.0.0", "0.1.0",  "1.2", "abc",    "",        "-1.0.0",        "1..0",
                           "1.2.",  "1.2.x",  "4.2", "0.0",    nullptr,   "1,0,0",         "x1.0.0",
                           "0",     "1 .2.3", "3",   "1.2 .3", "\n2.0.0", "4294967296.1.2"});
}

Text extension(Dice& dice) {
    return dice.pick_text(
        {"GL_EXT_geometry_shader", "GL_EXT_geometry_shader", "GL_EXT_tessellation_shader",
         "GL_EXT_tessellation_shader", "GL_EXT_geometry_shaders", "GL_EXT_geometry_shade",
         "GL_OES_texture_3D cl_khr_fp64", "xGL_EXT_tessellation_shaderx", "", nullptr});
}

void add_pair(Dice& dice, Record& record) {
    switch (dice.below(8)) {
    case 0:
        record.pair("prerotate",
                    dice.pick_text({"true", "true", "TRUE", "1", "false", "true ", "", nullptr}));
        break;
    case 1:
        record.pair("undefine", "anything");
        break;
    case 2:
        record.pair("architecture", dice.pick_text({"x", nullptr}));
        break;
    case 3: {
        const Text key = dice.pick_text({"foo", "", nullptr, "Compiler_type", "flexible_version ",
                                         "opengles_version", "prerotate\t", "extensions"});
        record.pair(key, dice.pick_text({"bar", "", nullptr, "1.0.0"}));
        break;
    }
    case 4:
    case 5: {
        const std::string api = dice.pick({"openglessl", "opencl"});
        record.pair(api + "_extensions", extension(dice));
        break;
    }
    default: {
        const std::string api = dice.pick({"openglessl", "openglessl", "opencl"});
        record.pair(api + "_version", version(dice));
        break;
    }
    }
}

void add_type(Dice& dice, Record& record, const std::string& api) {
    if (dice.one_in(12))
        record.pair("compiler_type",
                    dice.pick_text({"vulkan", "", nullptr, "OpenCL", "openglessl "}));
    else
        record.pair("compiler_type", dice.one_in(6) ? dice.pick({"openglessl", "opencl"}) : api);
    for (unsigned i = dice.below(4); i > 0; --i)
        record.pair(api + "_version", version(dice));
}

/// Counts and arrays that do not go together.
template <class Element>
void disarrange(Dice& dice, Array<Element>& array) {
    if (dice.one_in(40))
        array.null = true;
    if (dice.one_in(40) && !array.elements.empty())
        array.count = dice.below(static_cast<unsigned>(array.elements.size()));
}

Record generate_record(Dice& dice, const std::string& api) {
    Record record;
    record.binary = dice.one_in(6) ? (dice.one_in(2) ? 2 : 4294967295) : dice.below(2);
    record.cores.elements = generate_cores(dice);
    for (unsigned i = dice.one_in(10) ? 0 : dice.one_in(6) ? 2 : 1; i > 0; --i)
        add_type(dice, record, api);
    if (dice.one_in(4))
        record.pair("prerotate", "true");
    for (unsigned i = dice.below(6); i > 0; --i)
        add_pair(dice, record);
    for (unsigned i = dice.one_in(40) ? 0 : dice.one_in(10) ? 2 : 1; i > 0; --i)
        record.pair("flexible_version", flexible_version(dice));
    if (dice.one_in(10))
        record.entries.elements.push_back(
            dice.pick_text({"flexible_version", "compiler_type", "odd", nullptr}));
    disarrange(dice, record.cores);
    disarrange(dice, record.entries);
    if (dice.one_in(60))
        record.result = dice.one_in(2) ? -1 : 4;
    if (dice.one_in(10))
        record.says.push_back(dice.pick({"reporting", "", "a  b"}));
    return record;
}

Text output(Dice& dice) {
    return dice.pick_text({"0:1: error", "0:1: error", "", nullptr, "#error cl_khr_fp64",
                           "cl_khr_fp64", "xcl_qrx_printfx and cl_khr_icd", "cl_khr_fp", "\xff \t%",
                           "cl_khr_int64_base_atomics cl_khr_fp16 cl_khr_fp16"});
}

Array<Text> output_list(Dice& dice, unsigned most) {
    Array<Text> list;
    for (unsigned i = dice.below(most + 1); i > 0; --i)
        list.elements.push_back(output(dice));
    disarrange(dice, list);
    return list;
}

Outcome generate_outcome(Dice& dice) {
    Outcome outcome;
    outcome.word = dice.pick({"ALPHA", "BETA", "GAMMA", "GL_EXT_geometry", "GL_EXT_tess",
                              "GL_ANDROID_extension_pack_es31a", "GL_OES", "GL_", "#extension",
                              "#ifdef cl_khr_fp64", "#ifdef", "#version 100\n", "{}"});
    if (dice.one_in(2))
        outcome.result = static_cast<int>(dice.below(8)) - 1;
    if (dice.one_in(5))
        outcome.says.push_back(dice.pick({"compiling", "", "-"}));
    for (unsigned i = dice.below(4); i > 0; --i)
        outcome.lists.elements.push_back(output_list(dice, 3));
    const std::string bytes("\0\xff\n\0a", 5);
    const auto size = static_cast<std::ptrdiff_t>(dice.below(6));
    outcome.binary.elements.assign(bytes.begin(), bytes.begin() + size);
    outcome.a = output_list(dice, 3);
    outcome.b = output_list(dice, 2);
    disarrange(dice, outcome.lists);
    disarrange(dice, outcome.binary);
    return outcome;
}

} // namespace

void generate_records(Dice& dice, Plugin& plugin) {
    plugin.records.push_back(generate_record(dice, plugin.api));
    // Call 1 comes when the plug-in is opened, 2 when its compilers are listed,
    // 3 and on when the library is initialised once more.
    for (unsigned call = 2; call <= 3; ++call) {
        if (!dice.one_in(8))
            continue;
        Record changed = dice.one_in(2) ? generate_record(dice, plugin.api) : plugin.records[0];
        changed.from_call = call;
        if (dice.one_in(4))
            changed.result = 1;
        if (dice.one_in(4))
            changed.entries.elements = {"compiler_type", plugin.api};
        if (dice.one_in(4))
            changed.pair("flexible_version", dice.pick_text({"1.2", "abc", "", nullptr, "9.9.9"}));
        if (dice.one_in(3))
            changed.pair(plugin.api + "_version", dice.pick({"abc", "99999999999"}));
        changed.entries.count.reset();
        plugin.records.push_back(changed);
    }
}

void generate_outcomes(Dice& dice, Plugin& plugin) {
    for (unsigned i = dice.below(6); i > 0; --i)
        plugin.outcomes.push_back(generate_outcome(dice));
}

} // namespace model
