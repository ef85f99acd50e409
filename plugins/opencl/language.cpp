// SPDX-License-Identifier: MIT
#include "common/language.hpp"

#include "compile.hpp"
#include "options.hpp"

#include <iterator>

namespace {

// The records have no const, and nobody writes to what they point to.
char* text(const char* constant) {
    return const_cast<char*>(constant);
}

// No extensions: the manager then finds them out by compiling.
char* entries[] = {
    text("compiler_type"),    text("opencl"), // a pair a line
    text("opencl_version"),   text("100"),    //
    text("opencl_version"),   text("110"),    //
    text("opencl_version"),   text("120"),    //
    text("opencl_version"),   text("200"),    //
    text("opencl_version"),   text("300"),    //
    text("flexible_version"), text("1.0.0"),  //
    text("prerotate"),        text("false"),
};

} // namespace

namespace plugin {

vexaoc_capabilities language_capabilities() {
    vexaoc_capabilities record = {};
    record.binary_output_supported = 1;
    record.num_entries = std::size(entries);
    record.entries = entries;
    return record;
}

std::optional<Outputs> compile(const vexaoc_inputs& inputs) {
    const std::optional<opencl::Options> options = opencl::read_options(inputs);
    if (!options)
        return std::nullopt;
    return opencl::compile(inputs.source, *options, inputs.binary_output == 1);
}

} // namespace plugin
