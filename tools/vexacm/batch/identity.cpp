// SPDX-License-Identifier: MIT
#include "identity.hpp"

#include "../digest.hpp"
#include "../plugin_files.hpp"
#include "interrupt.hpp"
#include "source_file.hpp"

#include <map>
#include <utility>

namespace vexacm_tool {

namespace {

void add_source(Digest& digest, const Source& source) {
    digest.add(source.file).add(source.stage).add(source.defines).add(source.kernels);
    try {
        const std::string text = read_source_file(source.file);
        digest.add(std::uint64_t{1}).add(text);
    } catch (const Unreadable&) {
        digest.add(std::uint64_t{0});
    }
}

std::string digest_of_plugin(const std::string& directory, const Compiler& compiler) {
    Digest digest;
    for (const std::string& file : plugin_files(directory, compiler))
        digest.add(digest_of_file(file));
    return digest.text();
}

} // namespace

Identity::Identity(const Batch& batch, const std::vector<Compiler>& compilers,
                   const std::string& directory) {
    Digest digest;
    digest.add(batch.defines)
        .add(std::uint64_t{batch.prerotate})
        .add(std::uint64_t{batch.outputs.has_value()});
    std::map<std::pair<std::string, std::string>, std::string> plugins; // by API and driver
    for (const Compiler& compiler : compilers) {
        const auto [driver, is_new] = plugins.try_emplace({compiler.api, compiler.driver});
        if (is_new)
            driver->second = digest_of_plugin(directory, compiler);
        digest.add(compiler.driver).add(compiler.core).add(compiler.revision).add(compiler.api);
        digest.add(std::uint64_t{compiler.version}).add(driver->second);
    }
    digest.add(std::uint64_t{batch.sources.size()});
    for (const Source& source : batch.sources) {
        if (Interrupt::noted())
            return;
        add_source(digest, source);
    }
    run_ = digest.text();
}

} // namespace vexacm_tool
