// SPDX-License-Identifier: MIT
#include "compile.hpp"

#include "block_order.hpp"
#include "common/big_stack.hpp"
#include "frontend.hpp"
#include "kernels.hpp"
#include "limits.hpp"
#include "module_check.hpp"
#include "names.hpp"
#include "selects.hpp"
#include "spirv.hpp"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace opencl {
namespace {

bool is_too_long(const char* source, plugin::Outputs& outputs) {
    if (std::strlen(source) <= MAX_SOURCE_BYTES)
        return false;
    outputs.errors.push_back("error: the source has more than " + std::to_string(MAX_SOURCE_BYTES) +
                             " bytes");
    return true;
}

void check_names(const llvm::Module& module, const Options& options, plugin::Outputs& outputs) {
    for (const std::string& name : options.kernels) {
        if (!has_kernel(module, name))
            outputs.errors.push_back("error: no kernel named '" + name + "'");
    }
}

// Translated also where no binary is wanted: whether a source has errors must not depend on that.
void translate(llvm::Module& module, bool binary_wanted, plugin::Outputs& outputs) {
    std::vector<plugin::Texts> table = kernel_table(module);
    make_names_plain(module);
    order_blocks(module);
    widen_selects(module);
    std::vector<std::uint8_t> binary = make_spirv(module, outputs);
    if (!outputs.errors.empty())
        return;
    outputs.table = std::move(table);
    if (binary_wanted)
        outputs.binary = std::move(binary);
}

void compile_on_this_thread(Frontend& frontend, const char* source, const Options& options,
                            bool binary_wanted, plugin::Outputs& outputs) {
    const std::unique_ptr<llvm::Module> module = frontend.compile(source, options, outputs);
    if (!module)
        return;
    check_names(*module, options, outputs);
    check_module(*module, outputs);
    if (outputs.errors.empty())
        translate(*module, binary_wanted, outputs);
}

} // namespace

plugin::Outputs compile(const char* source, const Options& options, bool binary_wanted) {
    plugin::Outputs outputs;
    if (is_too_long(source, outputs))
        return outputs;
    plugin::run_on_big_stack(STACK_SIZE, [&] {
        auto frontend = std::make_unique<Frontend>();
        try {
            compile_on_this_thread(*frontend, source, options, binary_wanted, outputs);
        } catch (...) {
            // clang is built without exceptions and leaves its objects as they were when one
            // passes through: destroying them is no longer safe.
            static_cast<void>(frontend.release());
            throw;
        }
    });
    return outputs;
}

} // namespace opencl
