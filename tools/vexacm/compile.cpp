// SPDX-License-Identifier: MIT
#include "batch/batch.hpp"
#include "cache/cached_compile.hpp"
#include "cache/options.hpp"
#include "commands.hpp"
#include "compile_report.hpp"
#include "depfile.hpp"
#include "no_match.hpp"
#include "options.hpp"
#include "plugin_directory.hpp"
#include "plugin_files.hpp"
#include "stage.hpp"
#include "streams.hpp"

namespace vexacm_tool {

namespace {

struct Compile_options {
    std::vector<std::string> files;
    std::string stage;
    vexacm::Filters filters;
    bool all = false;
    std::vector<std::string> defines;
    std::vector<std::string> kernels;
    std::optional<std::string> output;
    std::optional<std::string> depfile;
    bool prerotate = false;
    Cache_settings cache;
    bool json = false;
    bool quiet = false;
};

void require(bool right, const std::string& otherwise) {
    if (!right)
        throw Failure{Exit_status::wrong_use, otherwise};
}

std::string stage_of(const std::string& file, const Compile_options& options) {
    const std::string stage = options.stage.empty() ? stage_of_file(file) : options.stage;
    require(!stage.empty(), "the ending of '" + file + "' tells no stage: use --stage");
    const std::string api = api_of_stage(stage);
    require(options.filters.api.value_or(api) == api,
            "--api " + options.filters.api.value_or(api) + " contradicts stage " + stage);
    return stage;
}

// Fills in what the file's name and the stage imply.
Compile_options completed(Compile_options options) {
    options.stage = stage_of(options.files.front(), options);
    options.filters.api = api_of_stage(options.stage);
    const bool kernel = options.stage == "kernel";
    require(!kernel || !options.kernels.empty(), "name at least one kernel with --kernel");
    require(kernel || options.kernels.empty(),
            "--kernel is for stage kernel, not " + options.stage);
    require(!options.json || options.output != "-", "--json and -o - both want standard output");
    require(!options.json || !options.quiet, "--json and --quiet exclude each other");
    require(!options.depfile || options.output.value_or("-") != "-",
            "--depfile tells what the file of -o depends on");
    return options;
}

std::string shown_name(const Compile_options& options) {
    return options.files.front() == "-" ? "<stdin>" : options.files.front();
}

std::string dependencies(const Compile_options& options, const Compiler& compiler,
                         const std::string& directory) {
    std::vector<std::string> sources = plugin_files(directory, compiler);
    if (options.files.front() != "-")
        sources.insert(sources.begin(), options.files.front());
    return dependency_rule(*options.output, sources);
}

void write_results(const Compile_options& options, const Compiler& compiler,
                   const std::string& dependencies, const Compiled& compiled) {
    const bool wants_binary = options.output && !compiled.has_errors;
    if (wants_binary) {
        if (compiled.binary.empty())
            throw Failure{Exit_status::refused,
                          shown_name(options) + ": the compiler returned no binary"};
        // First: a binary without it would never be made anew.
        if (options.depfile)
            write_binary(*options.depfile, dependencies);
        write_binary(*options.output, compiled.binary);
    }
    if (options.json)
        write_standard_output(json_report(compiler, compiled));
    else if (!options.quiet && options.output != "-")
        write_standard_output(report(compiled, wants_binary ? *options.output : ""));
}

Exit_status compile_one(const Compile_options& given, const std::optional<std::string>& plugins) {
    const Compile_options options = completed(given);
    std::string source = read_source(options.files.front());
    const std::string directory = plugin_directory(plugins);
    std::optional<Cache> cache;
    if (options.cache.directory)
        cache.emplace(options.cache, directory);
    const vexacm::Library library = open_library(directory);
    const Compiler compiler(*some_compilers(options.filters, directory).begin());

    const std::string dependencies_of_output =
        options.depfile ? dependencies(options, compiler, directory) : "";

    // Named first: what follows may be what the plug-in itself prints.
    if (!options.json && !options.quiet && options.output != "-")
        write_standard_output(compiler_line(compiler));

    const vexacm::Request request{
        std::move(source),          options.stage,    options.kernels, options.defines,
        options.output.has_value(), options.prerotate};
    const auto compiled =
        cache ? compile_with_cache(request, compiler, *cache) : compile_with(compiler.id, request);
    if (!compiled)
        throw Failure{Exit_status::refused,
                      shown_name(options) + ": the compiler did not carry out the request"};
    if (!options.json)
        print_diagnostics(shown_name(options), *compiled);
    write_results(options, compiler, dependencies_of_output, *compiled);
    return compiled->has_errors ? Exit_status::source_errors : Exit_status::done;
}

// Few jobs, and all the same what many are: what a plug-in does to one of them is
// not done to the others.
Exit_status compile_many(const Compile_options& options,
                         const std::optional<std::string>& plugins) {
    require(!options.output,
            "-o is for one file and one compiler: for more there is batch --outputs");
    require(!options.quiet, "--quiet is for one file and one compiler");
    Batch batch;
    for (const std::string& file : options.files) {
        require(file != "-", "standard input is for one file and one compiler");
        batch.sources.push_back({file, stage_of(file, options)});
    }
    give_kernels(batch.sources, options.kernels);
    batch.filters = options.filters;
    batch.all_compilers = options.all;
    batch.defines = options.defines;
    batch.prerotate = options.prerotate;
    batch.json = batch.ordered = options.json;
    batch.cache = options.cache;
    return run_batch(std::move(batch), plugins);
}

} // namespace

Command add_compile(CLI::App& tool) {
    const auto options = std::make_shared<Compile_options>();
    CLI::App* const command =
        tool.add_subcommand("compile", "Compile with the first compiler that passes");
    command->add_option("FILE", options->files, "Source; - is standard input; filters as of list")
        ->required()
        ->type_name("");
    command
        ->add_option("--stage", options->stage,
                     "What FILE is: vertex, fragment, compute, geometry,\n"
                     "tessellation_control, tessellation_evaluation\n"
                     "or kernel; without it, its ending tells")
        ->type_name("STAGE")
        ->check(one_of(stage_names()));
    add_hidden_filters(*command, options->filters);
    command->add_flag("--all", options->all, "Compile with all that pass, not with the first");
    command->add_option("-D", options->defines, "Definition for the preprocessor; repeatable")
        ->type_name("NAME[=VALUE]")
        ->allow_extra_args(false);
    command->add_option("--kernel", options->kernels, "Kernel to build; repeatable")
        ->type_name("NAME")
        ->allow_extra_args(false);
    command->add_flag("--prerotate", options->prerotate, "Pre-rotate the shader's output");
    add_text(*command, "-o", options->output, "File for the binary; - is standard output")
        ->type_name("OUT");
    add_text(*command, "--depfile", options->depfile, "File for what OUT depends on; make, Ninja")
        ->type_name("FILE");
    add_cache_options(*command, options->cache);
    command->add_flag("--json", options->json, "Print an object, with the diagnostics in it");
    command->add_flag("--quiet", options->quiet, "Print nothing but diagnostics");
    return {command, [options](const auto& plugins) {
                check(options->cache);
                const bool one = options->files.size() == 1 && !options->all;
                return one ? compile_one(*options, plugins) : compile_many(*options, plugins);
            }};
}

} // namespace vexacm_tool
