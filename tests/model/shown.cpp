// SPDX-License-Identifier: MIT
#include "request.hpp"
#include "steered.hpp"

namespace model {

namespace {

std::string list(const std::vector<Text>& texts) {
    std::string line = "[";
    for (const Text& text : texts)
        line += " " + shown(text);
    return line + " ]";
}

std::string list(const std::vector<std::string>& texts) {
    return list(std::vector<Text>(texts.begin(), texts.end()));
}

struct Shown_request {
    std::string operator()(const Initialise&) const { return "initialise"; }
    std::string operator()(const Release&) const { return "release"; }
    std::string operator()(const Manager_version&) const { return "manager version"; }
    std::string operator()(const Release_list&) const { return "release list"; }
    std::string operator()(const Release_outputs&) const { return "release outputs"; }

    std::string operator()(const List_compilers& request) const {
        std::string line = "list driver=" + shown(request.driver_name);
        line += " core=" + shown(request.core_name) + " revision=" + shown(request.core_revision);
        line += " api=" + shown(request.api_name) + " binary=" + shown(request.binary_output);
        line += " version=" + std::to_string(request.version);
        line += request.null_compilers ? " without compilers" : "";
        return line + (request.null_count ? " without count" : "");
    }

    std::string operator()(const Ask& request) const {
        const char* const names[] = {"driver name", "core name",  "core revision", "API name",
                                     "version",     "extensions", "binary output", "prerotation"};
        return names[static_cast<int>(request.property)] + std::string(" of ") +
               std::to_string(request.id);
    }

    std::string operator()(const Compile& request) const {
        std::string line = "compile with " + std::to_string(request.id);
        line += request.null_outputs ? " without outputs" : "";
        line += " source=" + shown(request.source) + " type=" + shown(request.shader_type);
        line += " kernels=" + std::to_string(request.num_kernel_names);
        line += list(request.kernel_names);
        line += " binary=" + shown(request.binary_output) + " prerotate=";
        line += shown(request.prerotate) + " defines=" + std::to_string(request.num_defines);
        return line + list(request.defines);
    }
};

} // namespace

std::string shown(const Text& text) {
    return text ? "\"" + logged(*text) + "\"" : "null";
}

std::string shown(bool value) {
    return value ? "true" : "false";
}

std::string shown(const Outputs& outputs) {
    std::string text = "lists:";
    for (const std::vector<Text>& texts : outputs.lists)
        text += " " + list(texts);
    text += "\nbinary of " + std::to_string(outputs.binary.size()) + ": " + logged(outputs.binary);
    return text + "\na: " + list(outputs.a) + "\nb: " + list(outputs.b) + "\n";
}

std::string shown(const std::vector<unsigned>& ids) {
    std::string text = std::to_string(ids.size()) + ":";
    for (const unsigned id : ids)
        text += " " + std::to_string(id);
    return text + "\n";
}

std::string shown(const Request& request) {
    return std::visit(Shown_request(), request);
}

std::string shown(const Reply& reply) {
    return "-- result\n" + reply.result + "\n-- standard error\n" + reply.err + "-- log\n" +
           reply.log;
}

std::string shown(const Directory& directory) {
    std::string text = "directory " + directory.root;
    text += directory.has_openglessl ? "" : ", no openglessl";
    text += directory.has_opencl ? "\n" : ", no opencl\n";
    for (const Plugin& plugin : directory.plugins) {
        text += "== " + plugin.api + "/" + plugin.file_name;
        text += " (kind " + std::to_string(static_cast<int>(plugin.kind)) + ")\n";
        if (plugin.opens())
            text += steering(plugin);
    }
    return text;
}

} // namespace model
