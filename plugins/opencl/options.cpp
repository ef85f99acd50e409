// SPDX-License-Identifier: MIT
#include "options.hpp"

#include "common/option_pairs.hpp"

#include <string_view>
#include <utility>

namespace opencl {
namespace {

class Options_reader {
public:
    bool read(std::string_view key, std::string_view value) {
        if (key == "shader_type")
            return has_shader_type_ = value == "kernel";
        if (key == "kernel_name")
            return read_kernel_name(value);
        if (key == "define")
            return read_definition(value);
        if (key == "compiler_type")
            return value == "opencl";
        return key == "prerotate" && (value == "true" || value == "false");
    }

    std::optional<Options> result() {
        if (!has_shader_type_)
            return std::nullopt;
        return std::move(options_);
    }

private:
    bool read_kernel_name(std::string_view value) {
        options_.kernels.emplace_back(value);
        return true;
    }

    bool read_definition(std::string_view value) {
        std::optional<plugin::Definition> definition = plugin::read_definition(value);
        if (definition)
            options_.definitions.push_back(*std::move(definition));
        return definition.has_value();
    }

    Options options_;
    bool has_shader_type_ = false;
};

} // namespace

std::optional<Options> read_options(const vexaoc_inputs& inputs) {
    Options_reader reader;
    const bool understood =
        plugin::read_pairs(inputs, [&](std::string_view key, std::string_view value) {
            return reader.read(key, value);
        });
    return understood ? reader.result() : std::nullopt;
}

} // namespace opencl
