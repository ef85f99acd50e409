// SPDX-License-Identifier: MIT
#include "sources.hpp"

#include "../failure.hpp"
#include "../stage.hpp"
#include "../streams.hpp"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string_view>

namespace vexacm_tool {

namespace {

using nlohmann::json;
using Texts = std::vector<std::string>;

// Names that end in newlines, or in NUL bytes where there are any: a name can
// have a newline in it.
Texts names_in(std::string_view list) {
    const char end = list.find('\0') != std::string_view::npos ? '\0' : '\n';
    Texts names;
    while (!list.empty()) {
        const std::string_view name = list.substr(0, list.find(end));
        if (!name.empty())
            names.emplace_back(name);
        list.remove_prefix(std::min(name.size() + 1, list.size()));
    }
    return names;
}

Source source_by_ending(std::string file) {
    std::string stage = stage_of_file(file);
    if (stage.empty())
        throw Failure{Exit_status::wrong_use,
                      "the ending of '" + file + "' tells no stage: name it in a manifest"};
    return {std::move(file), std::move(stage)};
}

[[noreturn]] void refuse_manifest(const std::string& file, const std::string& reason) {
    throw Failure{Exit_status::wrong_use, "manifest '" + file + "': " + reason};
}

Texts texts(const json& value) {
    return value.get<Texts>();
}

// One entry of a manifest; files are found from the folder it lies in.
Source listed_source(const json& entry, const std::filesystem::path& folder) {
    Source source;
    for (const auto& [key, value] : entry.get_ref<const json::object_t&>()) {
        if (key == "source")
            source.file = (folder / value.get<std::string>()).string();
        else if (key == "stage")
            source.stage = value.get<std::string>();
        else if (key == "defines")
            source.defines = texts(value);
        else if (key == "kernels")
            source.kernels = texts(value);
        else
            throw std::runtime_error("unknown key '" + key + "'");
    }
    if (source.file.empty())
        throw std::runtime_error("an entry without a source");
    if (source.stage.empty())
        source.stage = stage_of_file(source.file);
    const Texts stages = stage_names();
    if (std::find(stages.begin(), stages.end(), source.stage) == stages.end())
        throw std::runtime_error("no stage for '" + source.file + "'");
    return source;
}

std::vector<Source> sources_of_manifest(const std::string& file) {
    const std::string text = read_any_bytes(file);
    std::vector<Source> sources;
    try {
        const json manifest = json::parse(text);
        for (const auto& [key, value] : manifest.get_ref<const json::object_t&>()) {
            if (key != "sources")
                throw std::runtime_error("unknown key '" + key + "'");
            for (const json& entry : value.get_ref<const json::array_t&>())
                sources.push_back(listed_source(entry, std::filesystem::path(file).parent_path()));
        }
    } catch (const std::exception& error) {
        refuse_manifest(file, error.what());
    }
    return sources;
}

} // namespace

std::vector<Source> named_sources(const Texts& arguments,
                                  const std::optional<std::string>& manifest,
                                  const Texts& kernels) {
    std::vector<Source> sources;
    for (const std::string& argument : arguments) {
        if (argument.rfind('@', 0) == 0)
            for (std::string& name : names_in(read_any_bytes(argument.substr(1))))
                sources.push_back(source_by_ending(std::move(name)));
        else
            sources.push_back(source_by_ending(argument));
    }
    if (manifest)
        for (Source& source : sources_of_manifest(*manifest))
            sources.push_back(std::move(source));
    if (sources.empty())
        throw Failure{Exit_status::wrong_use, "no sources: name files, @LIST or --manifest"};
    give_kernels(sources, kernels);
    return sources;
}

void give_kernels(std::vector<Source>& sources, const Texts& kernels) {
    bool given = false;
    for (Source& source : sources) {
        if (source.stage == "kernel" && source.kernels.empty()) {
            source.kernels = kernels;
            given = true;
        }
        if (source.stage == "kernel" && source.kernels.empty())
            throw Failure{Exit_status::wrong_use,
                          "name at least one kernel of '" + source.file + "' with --kernel"};
        if (source.stage != "kernel" && !source.kernels.empty())
            throw Failure{Exit_status::wrong_use,
                          "kernels are for stage kernel: '" + source.file + "'"};
    }
    if (!given && !kernels.empty())
        throw Failure{Exit_status::wrong_use, "--kernel is given, and no source needs it"};
}

} // namespace vexacm_tool
