// SPDX-License-Identifier: MIT
#include "key.hpp"

#include "../digest.hpp"

namespace vexacm_tool {

namespace {

// Another one whenever this tool makes something else of what a plug-in gives.
constexpr std::uint64_t FORMAT = 1;

} // namespace

std::string cache_key(const vexacm::Request& request, const Compiler& compiler,
                      const std::string& plugin_digest) {
    vexacm_version manager{};
    vexacm_get_manager_version(&manager);
    return Digest()
        .add(FORMAT)
        .add(manager.major)
        .add(manager.minor)
        .add(manager.patch)
        .add(plugin_digest)
        .add(compiler.api)
        .add(compiler.driver)
        .add(compiler.core)
        .add(compiler.revision)
        .add(request.stage)
        .add(request.source)
        .add(request.defines)
        .add(request.kernels)
        .add(std::uint64_t{request.binary_output})
        .add(std::uint64_t{request.prerotate})
        .text();
}

} // namespace vexacm_tool
