// SPDX-License-Identifier: MIT
#include "comparison.hpp"

#include <cstdio>

#include "target.hpp"
#include "written.hpp"

namespace {

model::Directory written(model::Directory directory, Plugin_directory& files) {
    model::write(directory, files);
    return directory;
}

} // namespace

Comparison::Comparison(const model::Directory& description, Plugin_directory& files)
    : directory(written(description, files)), manager(directory), caller(directory, files) {}

void Comparison::ask(const model::Request& request) {
    asked.push_back(request);
    const std::string actual = shown(caller.answer(request));
    const std::string predicted = shown(manager.answer(request));
    if (predicted == actual)
        return;
    std::fputs(shown(directory).c_str(), stderr);
    for (const model::Request& each : asked)
        std::fprintf(stderr, "%s\n", shown(each).c_str());
    expect_equal(predicted, actual);
}

unsigned Comparison::compilers() const {
    const model::Catalogue* const catalogue = manager.compilers();
    return catalogue ? static_cast<unsigned>(catalogue->entries.size()) : 0;
}

model::Plugin plugin(const std::string& api, const std::string& driver_name) {
    model::Plugin plugin;
    plugin.api = api;
    plugin.file_name = "lib" + driver_name + ".so";
    plugin.records.emplace_back();
    model::Record& record = plugin.records.back();
    for (const std::string type : {"openglessl", "opencl"}) {
        record.pair("compiler_type", type);
        record.pair(type + "_version", "310");
    }
    record.pair("flexible_version", "1.0.0");
    record.cores.elements.push_back({"k46x", "r0p1_00rel0"});
    return plugin;
}
