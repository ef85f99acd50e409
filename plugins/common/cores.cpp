// SPDX-License-Identifier: MIT
#include "common/cores.hpp"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace plugin {
namespace {

// The records have no const, and nobody writes to what they point to.
vexaoc_core core(const char* name) {
    return {const_cast<char*>(name), const_cast<char*>("r0p0_00rel0")};
}

vexaoc_core cores[] = {core("k30x"), core("k32x"), core("k42x"), core("k46x"),
                       core("k52x"), core("k53x"), core("k56x"), core("k58x")};

} // namespace

void add_cores(vexaoc_capabilities& record) {
    record.num_cores = std::size(cores);
    record.cores = cores;
}

bool knows_core(const char* name, const char* revision) {
    return std::any_of(std::begin(cores), std::end(cores), [=](const vexaoc_core& known) {
        return std::strcmp(known.core_name, name) == 0 &&
               std::strcmp(known.core_revision, revision) == 0;
    });
}

} // namespace plugin
