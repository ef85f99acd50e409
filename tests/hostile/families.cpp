// SPDX-License-Identifier: MIT
#include "hostile.hpp"

namespace hostile {

namespace {

model::Plugin good_plugin(const std::string& api, const std::string& file_name) {
    model::Plugin plugin;
    plugin.api = api;
    plugin.file_name = file_name;
    model::Record record;
    record.cores.elements = {{"k58x", "r0p0_00rel0"}, {"k46x", "r1p2_03rel4"}};
    record.pair("compiler_type", api);
    record.pair(api + "_version", "320");
    record.pair(api + "_extensions", "GL_EXT_geometry_shader cl_x");
    record.pair("flexible_version", "1.0.0");
    plugin.records = {record};
    return plugin;
}

const char* other(const std::string& api) {
    return api == "opencl" ? "openglessl" : "opencl";
}

} // namespace

const std::vector<Family>& families() {
    static const std::vector<Family> all = {
        {"Results", 60, spoil_results}, {"Pointers", 64, spoil_pointers},
        {"Counts", 56, spoil_counts},   {"Versions", 80, spoil_versions},
        {"Bytes", 64, spoil_bytes},     {"SecondRecord", 56, spoil_second_record},
        {"Outputs", 40, spoil_outputs}, {"Length", 20, lengthen},
        {"Multitude", 20, multiply},    {"Several", 80, spoil_several},
    };
    return all;
}

Case generate(unsigned family, unsigned number) {
    model::Dice dice(1000 * family + number);
    Case that;
    const std::string api = dice.one_in(2) ? "openglessl" : "opencl";
    const std::string other_api = dice.one_in(2) ? api : other(api);
    model::Plugin plugin = good_plugin(api, "libVexa-K300_r5p0-06rel0.so");
    families()[family].spoil(dice, number, plugin, that);
    if (!that.large)
        that.manners.emplace_back("guard");
    that.directory.plugins = {good_plugin(other_api, "libVexa-K300_r9p0-00rel0.so"), plugin,
                              good_plugin(other_api, "libVexa-K300_r1p0-00rel0.so")};
    return that;
}

} // namespace hostile
