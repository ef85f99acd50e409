// SPDX-License-Identifier: MIT
#include "written.hpp"

#include <filesystem>

#include <dlfcn.h>

#include "request.hpp"

namespace model {

namespace {

const char* c_string(const Text& text) {
    return text ? text->c_str() : nullptr;
}

void tell_count(Fake_plugin& fake, const std::string& what, std::optional<std::uint32_t> count) {
    if (count)
        fake.line(what + " " + std::to_string(*count));
}

void tell(Fake_plugin& fake, const Record& record) {
    fake.record(static_cast<int>(record.from_call)).result(record.result);
    for (const std::string& line : record.says)
        fake.say(line);
    fake.binary_output(record.binary);
    for (const Core& core : record.cores.elements)
        fake.core(c_string(core.name), c_string(core.revision));
    for (const Text& text : record.entries.elements)
        fake.text(c_string(text));
    tell_count(fake, "num-cores", record.cores.count);
    tell_count(fake, "num-entries", record.entries.count);
    if (record.cores.null)
        fake.null_cores();
    if (record.entries.null)
        fake.null_entries();
}

void tell(Fake_plugin& fake, const Outcome& outcome) {
    fake.outputs(outcome.word).result(outcome.result);
    for (const std::string& line : outcome.says)
        fake.say(line);
    for (const Array<Text>& list : outcome.lists.elements) {
        fake.list();
        for (const Text& text : list.elements)
            fake.item(c_string(text));
        tell_count(fake, "num-items", list.count);
        if (list.null)
            fake.line("null-items");
    }
    tell_count(fake, "num-lists", outcome.lists.count);
    if (outcome.lists.null)
        fake.line("null-lists");
    if (!outcome.binary.elements.empty())
        fake.binary({outcome.binary.elements.data(), outcome.binary.elements.size()});
    tell_count(fake, "binary-size", outcome.binary.count);
    if (outcome.binary.null)
        fake.line("null-binary");
    for (const Text& text : outcome.a.elements)
        fake.a(c_string(text));
    for (const Text& text : outcome.b.elements)
        fake.b(c_string(text));
    tell_count(fake, "num-a", outcome.a.count);
    tell_count(fake, "num-b", outcome.b.count);
    if (outcome.a.null)
        fake.line("null-a");
    if (outcome.b.null)
        fake.line("null-b");
}

Fake_plugin fake(const Plugin& plugin) {
    Fake_plugin fake;
    fake.api_version(plugin.version[0], plugin.version[1], plugin.version[2]);
    if (plugin.say_on_load)
        fake.say_on_load(*plugin.say_on_load);
    if (plugin.say_on_unload)
        fake.say_on_unload(*plugin.say_on_unload);
    for (const Record& record : plugin.records)
        tell(fake, record);
    for (const Outcome& outcome : plugin.outcomes)
        tell(fake, outcome);
    return fake;
}

void add(const Plugin& plugin, Plugin_directory& files) {
    namespace fs = std::filesystem;
    switch (plugin.kind) {
    case Plugin::Kind::fake:
        files.add(plugin.api, plugin.file_name, fake(plugin));
        break;
    case Plugin::Kind::lacks_a_function:
        files.add(plugin.api, plugin.file_name, fake(plugin),
                  "fake_plugin_without_" + plugin.missing_function);
        break;
    case Plugin::Kind::lacks_a_library:
        files.add(plugin.api, plugin.file_name, fake(plugin),
                  "fake_plugin_needing_a_missing_library");
        break;
    case Plugin::Kind::text:
        files.add_file(plugin.api, plugin.file_name,
                       "no shared library, but long enough to be "
                       "read as the beginning of one\n");
        break;
    case Plugin::Kind::folder:
        fs::create_directory(files.path(plugin.api, plugin.file_name));
        break;
    case Plugin::Kind::dangling:
        fs::create_symlink("nothing", files.path(plugin.api, plugin.file_name));
        break;
    }
}

/// The plug-ins in the order in which the system lists them.
std::vector<Plugin> in_listed_order(const std::vector<Plugin>& plugins,
                                    const Plugin_directory& files) {
    std::vector<Plugin> listed;
    for (const std::string api : {"openglessl", "opencl"})
        for (const std::string& name : files.listed(api))
            for (const Plugin& plugin : plugins)
                if (plugin.api == api && plugin.file_name == name)
                    listed.push_back(plugin);
    return listed;
}

std::string load_error(const std::string& path) {
    if (void* const handle = dlopen(path.c_str(), RTLD_NOW)) {
        dlclose(handle);
        return "it loads after all";
    }
    return dlerror();
}

} // namespace

std::string steering(const Plugin& plugin) {
    return fake(plugin).steering();
}

void write(Directory& directory, Plugin_directory& files) {
    for (const Plugin& plugin : directory.plugins)
        add(plugin, files);
    for (const std::string api : {"openglessl", "opencl"})
        if (!directory.has(api))
            files.remove(api);
    directory.root = files.root() + directory.root;
    directory.plugins = in_listed_order(directory.plugins, files);
    for (Plugin& plugin : directory.plugins)
        if (!plugin.opens())
            plugin.load_error = load_error(path(directory, plugin));
}

} // namespace model
