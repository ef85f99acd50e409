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
    text("compiler_type"),      text("openglessl"), // a pair a line
    text("openglessl_version"), text("100"),        //
    text("openglessl_version"), text("300"),        //
    text("openglessl_version"), text("310"),        //
    text("openglessl_version"), text("320"),        //
    text("flexible_version"),   text("1.0.0"),      //
    text("prerotate"),          text("false"),
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
    const std::optional<glsl::Options> options = glsl::read_options(inputs);
    if (!options)
        return std::nullopt;
    return glsl::compile(inputs.source, *options, inputs.binary_output == 1);
}

} // namespace plugin
