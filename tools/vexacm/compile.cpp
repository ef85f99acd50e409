// SPDX-License-Identifier: MIT
#include "commands.hpp"
#include "compile_report.hpp"
#include "options.hpp"
#include "plugin_directory.hpp"
#include "stage.hpp"
#include "streams.hpp"

namespace vexacm_tool {

namespace {

struct Compile_options {
    std::string file;
    std::string stage;
    Filters filters;
    std::vector<std::string> defines;
    std::vector<std::string> kernels;
    std::optional<std::string> output;
    bool prerotate = false;
    bool json = false;
};

void require(bool right, const std::string& otherwise) {
    if (!right)
        throw Failure{Exit_status::wrong_use, otherwise};
}

// Fills in what the file's name and the stage imply.
Compile_options completed(Compile_options options) {
    if (options.stage.empty())
        options.stage = stage_of_file(options.file);
    require(!options.stage.empty(),
            "the ending of '" + options.file + "' tells no stage: use --stage");

    const std::string api = api_of_stage(options.stage);
    require(options.filters.api.value_or(api) == api,
            "--api " + options.filters.api.value_or(api) + " contradicts stage " + options.stage);
    options.filters.api = api;

    const bool kernel = options.stage == "kernel";
    require(!kernel || !options.kernels.empty(), "name at least one kernel with --kernel");
    require(kernel || options.kernels.empty(),
            "--kernel is for stage kernel, not " + options.stage);
    require(!options.json || options.output != "-", "--json and -o - both want standard output");
    return options;
}

std::string shown_name(const Compile_options& options) {
    return options.file == "-" ? "<stdin>" : options.file;
}

std::vector<const char*> pointers(const std::vector<std::string>& texts) {
    std::vector<const char*> result;
    for (const std::string& text : texts)
        result.push_back(text.c_str());
    return result;
}

bool compile_source(Outputs& outputs, const Compile_options& options, const std::string& source,
                    unsigned int id) {
    const auto kernels = pointers(options.kernels);
    const auto defines = pointers(options.defines);
    return vexacm_compile(outputs.get(), source.c_str(), options.stage.c_str(), kernels.data(),
                          static_cast<int>(kernels.size()), options.output.has_value(),
                          options.prerotate, defines.data(), static_cast<int>(defines.size()), id);
}

void write_results(const Compile_options& options, const Compiler& compiler,
                   const vexaoc_outputs& outputs) {
    const bool wants_binary = options.output && outputs.num_strings_a == 0;
    if (wants_binary) {
        if (outputs.binary_size == 0)
            throw Failure{Exit_status::refused,
                          shown_name(options) + ": the compiler returned no binary"};
        write_binary(*options.output,
                     {reinterpret_cast<const char*>(outputs.binary), outputs.binary_size});
    }
    if (options.json)
        write_standard_output(json_report(compiler, outputs));
    else if (options.output != "-")
        write_standard_output(report(outputs, wants_binary ? *options.output : ""));
}

Exit_status compile(const Compile_options& given, const std::optional<std::string>& plugins) {
    const Compile_options options = completed(given);
    const std::string source = read_source(options.file);
    const Library library = open_library(plugins);
    const Compiler_ids ids = matching_compilers(options.filters);
    if (ids.count == 0)
        throw Failure{Exit_status::no_compiler, "no compiler matches"};
    const Compiler compiler = properties(*ids.begin());

    // Named first: what follows may be what the plug-in itself prints.
    if (!options.json && options.output != "-")
        write_standard_output(compiler_line(compiler));

    Outputs outputs;
    if (!compile_source(outputs, options, source, compiler.id))
        throw Failure{Exit_status::refused,
                      shown_name(options) + ": the compiler did not carry out the request"};
    if (!options.json)
        print_diagnostics(shown_name(options), *outputs);
    write_results(options, compiler, *outputs);
    return outputs->num_strings_a == 0 ? Exit_status::done : Exit_status::source_errors;
}

} // namespace

Command add_compile(CLI::App& tool) {
    const auto options = std::make_shared<Compile_options>();
    CLI::App* const command =
        tool.add_subcommand("compile", "Compile with the first compiler that passes the filters");
    command->add_option("FILE", options->file, "Source text; - reads standard input")
        ->required()
        ->type_name("");
    command->add_option("--stage", options->stage, "What FILE is; without it, its ending tells")
        ->check(CLI::IsMember(stage_names()));
    add_filters(*command, options->filters);
    command->add_option("-D", options->defines, "Definition for the preprocessor; repeatable")
        ->type_name("NAME[=VALUE]")
        ->allow_extra_args(false);
    command->add_option("--kernel", options->kernels, "Kernel to build; repeatable")
        ->type_name("NAME")
        ->allow_extra_args(false);
    command->add_flag("--prerotate", options->prerotate, "Pre-rotate the shader's output");
    add_text(*command, "-o", options->output, "File for the binary; - is standard output")
        ->type_name("OUT");
    command->add_flag("--json", options->json, "Print an object, with the diagnostics in it");
    return {command, [options](const auto& plugins) { return compile(*options, plugins); }};
}

} // namespace vexacm_tool
