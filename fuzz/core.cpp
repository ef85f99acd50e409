// SPDX-License-Identifier: MIT
//
// Core names and revisions: a zero byte stands behind each name and behind each
// revision. What they are shown as, which numbers are read from them, and how
// each core and the one before it are ordered.
#include <algorithm>

#include "names.hpp"
#include "target.hpp"
#include "vexacm_internal_compiler.hpp"
#include "vexacm_vexaoc_library.hpp"

namespace {

using Compiler = VexaCM::Vexacm_internal_compiler;

class Texts {
public:
    Texts(const std::uint8_t* data, std::size_t size) : rest(data, data + size) {}

    bool empty() const { return rest.empty(); }

    std::string next() {
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        const std::string text = rest.substr(0, end);
        rest.erase(0, end + 1);
        return text;
    }

private:
    std::string rest;
};

Compiler compiler(const std::string& name, const std::string& revision) {
    return Compiler(1, 0, 0, 1, 0, 0, "driver", name, revision, "opencl", {}, "", false, false,
                    nullptr);
}

std::string shown(const model::Rank& rank) {
    std::string text;
    for (const std::uint32_t number : rank)
        text += " " + std::to_string(number);
    return text;
}

model::Rank read_rank(const Compiler& compiler) {
    model::Rank rank = {};
    Compiler::parse_core_name(compiler.get_core_name(), &rank[0]);
    Compiler::parse_core_revision(compiler.get_core_revision(), &rank[1]);
    return rank;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Texts texts(data, size);
    Compiler before = compiler("", "");
    model::Rank rank_before = {};
    while (!texts.empty()) {
        const std::string name = texts.next();
        const std::string revision = texts.next();
        const Compiler core = compiler(name, revision);
        const model::Rank rank = model::read_rank(model::display_name(name), revision);
        expect_equal(model::display_name(name) + shown(rank),
                     core.get_core_name() + shown(read_rank(core)));
        expect_equal(std::to_string(rank >= rank_before) + std::to_string(rank_before >= rank),
                     std::to_string(Compiler::before(core, before)) +
                         std::to_string(Compiler::before(before, core)));
        before = core;
        rank_before = rank;
    }
    return 0;
}
