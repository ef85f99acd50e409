// SPDX-License-Identifier: MIT
#include "compile.hpp"

#include "call_graph.hpp"
#include "common/big_stack.hpp"
#include "diagnostics.hpp"
#include "expanded_source.hpp"
#include "extensions.hpp"
#include "glslang_process.hpp"
#include "limits.hpp"
#include "macro_budget.hpp"
#include "spirv.hpp"
#include "statistics.hpp"

#include <glslang/MachineIndependent/localintermediate.h>
#include <glslang/Public/ResourceLimits.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

namespace glsl {
namespace {

// Sources without #version are of this one.
constexpr int DEFAULT_VERSION = 100;

// Without cascading errors only the first one is reported.
constexpr auto MESSAGES = static_cast<EShMessages>(EShMsgDefault | EShMsgCascadingErrors);

struct Job {
    const char* source;
    const Options& options;
    bool binary_wanted;
};

// The job must live as long as the shader: glslang keeps the address of job.source.
void prepare(glslang::TShader& shader, const Job& job) {
    shader.setStrings(&job.source, 1);
    shader.setPreamble(job.options.preamble.c_str());
}

// Also ends here when the macros do not: nothing else may look at such a source.
std::optional<std::string> preprocess(const Job& job) {
    const Macro_budget budget;
    glslang::TShader shader(job.options.stage);
    prepare(shader, job);
    glslang::TShader::ForbidIncluder no_includes;
    std::string text;
    // Errors are left to the parser, which comes upon the same ones.
    shader.preprocess(GetDefaultResources(), DEFAULT_VERSION, ENoProfile, false, false, MESSAGES,
                      &text, no_includes);
    if (budget.exhausted())
        return std::nullopt;
    return text;
}

void check_limits(const Expanded_source& source, plugin::Outputs& outputs) {
    if (source.tokens > MAX_TOKENS)
        outputs.errors.push_back("ERROR: the source has more than " + std::to_string(MAX_TOKENS) +
                                 " tokens");
    if (source.largest_struct > MAX_STRUCT_MEMBERS)
        outputs.errors.push_back("ERROR: a structure has more than " +
                                 std::to_string(MAX_STRUCT_MEMBERS) + " members");
}

std::optional<Expanded_source> read_source(const Job& job, plugin::Outputs& outputs) {
    if (std::strlen(job.source) > MAX_SOURCE_BYTES) {
        outputs.errors.push_back("ERROR: the source has more than " +
                                 std::to_string(MAX_SOURCE_BYTES) + " bytes");
        return std::nullopt;
    }
    const std::optional<std::string> text = preprocess(job);
    if (!text) {
        outputs.errors.push_back("ERROR: macros expand to more than " +
                                 std::to_string(MAX_MACRO_TOKENS) + " tokens");
        return std::nullopt;
    }
    Expanded_source source = read_expanded(*text);
    check_limits(source, outputs);
    if (!outputs.errors.empty())
        return std::nullopt;
    return source;
}

bool knows_version(const glslang::TIntermediate& tree) {
    const int version = tree.getVersion();
    return tree.getProfile() == EEsProfile &&
           (version == 100 || version == 300 || version == 310 || version == 320);
}

// glslang also compiles the desktop's language, and messages under its rules would lead astray:
// only those about the version itself are kept, such as of a stage that came later.
void report_version(int version, const char* log, plugin::Outputs& outputs) {
    plugin::Outputs all;
    add_diagnostics(log, all);
    for (const std::string& error : all.errors) {
        if (error.rfind("ERROR: #version: ", 0) == 0)
            outputs.errors.push_back(error);
    }
    if (outputs.errors.empty())
        outputs.errors.push_back("ERROR: #version: " + std::to_string(version) +
                                 " is not supported; use 100, 300 es, 310 es or 320 es");
}

bool parse(glslang::TShader& shader, const Expanded_source& source, plugin::Outputs& outputs) {
    const Macro_budget budget;
    const bool parsed = shader.parse(GetDefaultResources(), DEFAULT_VERSION, false, MESSAGES);
    const glslang::TIntermediate& tree = *shader.getIntermediate();
    if (!knows_version(tree)) {
        report_version(tree.getVersion(), shader.getInfoLog(), outputs);
        return false;
    }
    check_extensions(source, tree.getVersion(), outputs);
    add_diagnostics(shader.getInfoLog(), outputs);
    if (parsed && calls_in(tree) > MAX_CALLS)
        outputs.errors.push_back("ERROR: functions call each other in more than " +
                                 std::to_string(MAX_CALLS) + " ways");
    return parsed && outputs.errors.empty();
}

bool link(glslang::TProgram& program, plugin::Outputs& outputs) {
    const bool linked = program.link(MESSAGES);
    add_diagnostics(program.getInfoLog(), outputs);
    return linked;
}

void translate(glslang::TProgram& program, const Job& job, plugin::Outputs& outputs) {
    const Spirv words = make_spirv(program, job.options.stage, outputs);
    if (!outputs.errors.empty())
        return;
    outputs.table = statistics(*program.getIntermediate(job.options.stage), words);
    if (job.binary_wanted) {
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(words.data());
        outputs.binary.assign(bytes, bytes + words.size() * sizeof(words[0]));
    }
}

void compile_on_this_thread(const Job& job, plugin::Outputs& outputs) {
    const std::optional<Expanded_source> source = read_source(job, outputs);
    if (!source)
        return;
    glslang::TShader shader(job.options.stage);
    prepare(shader, job);
    glslang::TProgram program; // must go before the shader
    program.addShader(&shader);
    if (parse(shader, *source, outputs) && link(program, outputs))
        translate(program, job, outputs);
}

} // namespace

plugin::Outputs compile(const char* source, const Options& options, bool binary_wanted) {
    use_glslang();
    plugin::Outputs outputs;
    plugin::run_on_big_stack(STACK_SIZE, [&] {
        try {
            compile_on_this_thread({source, options, binary_wanted}, outputs);
        } catch (...) {
            set_unusable();
            throw;
        }
    });
    return outputs;
}

} // namespace glsl
