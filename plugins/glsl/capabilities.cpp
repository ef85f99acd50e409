// SPDX-License-Identifier: MIT
#include "capabilities.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace glsl {
namespace {

// The records have no const, and nobody writes to what they point to.
char* text(const char* constant) {
    return const_cast<char*>(constant);
}

vexaoc_core core(const char* name) {
    return {text(name), text("r0p0_00rel0")};
}

vexaoc_core cores[] = {core("k30x"), core("k32x"), core("k42x"), core("k46x"),
                       core("k52x"), core("k53x"), core("k56x"), core("k58x")};

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

vexaoc_capabilities capabilities() {
    vexaoc_capabilities record = {};
    record.num_cores = std::size(cores);
    record.cores = cores;
    record.binary_output_supported = 1;
    record.num_entries = std::size(entries);
    record.entries = entries;
    return record;
}

bool knows_core(const char* name, const char* revision) {
    return std::any_of(std::begin(cores), std::end(cores), [=](const vexaoc_core& known) {
        return std::strcmp(known.core_name, name) == 0 &&
               std::strcmp(known.core_revision, revision) == 0;
    });
}

} // namespace glsl
