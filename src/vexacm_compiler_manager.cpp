// SPDX-License-Identifier: MIT
#include "vexacm_compiler_manager.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "plugin_text.hpp"
#include "report.hpp"
#include "vexacm_library_manager.hpp"
#include "vexacm_vexaoc_library.hpp"

namespace VexaCM {

namespace {

using namespace std::string_view_literals;

// Cores that are never offered, with what no name contains between them.
constexpr auto blacklisted_vexa_cores = "Vexa-100\0Vexa-K350\0Vexa-K370"sv;

// Deliberate: the reported name is searched inside the listed names, so that
// "100", "K350" and the empty name are passed over too. Held by
// Catalogue.PassesOverCoresThatOccurInABlacklistedName.
bool is_blacklisted(std::string_view core_name) {
    return blacklisted_vexa_cores.find(core_name) != std::string_view::npos;
}

// What a plug-in reports about one shading language.
struct Api_capabilities {
    explicit Api_capabilities(const char* name_) : name(name_) {}

    void convert_versions() {
        for (const char* version : versions)
            highest_version =
                std::max(highest_version, static_cast<std::uint32_t>(to_int(version)));
    }

    const char* name;
    std::vector<const char*> versions;
    std::uint32_t highest_version = 0;
    std::string extensions; // each with a blank behind it
    // A compiler for no core, made with the first: the others take after it.
    std::optional<Vexacm_internal_compiler> model;
};

// A plug-in's capability list, by key. The texts stay the plug-in's.
struct Reported_capabilities {
    explicit Reported_capabilities(const vexaoc_capabilities& capabilities) {
        for_each_capability(capabilities,
                            [this](const char* key, const char* value) { read(key, value); });
    }

    std::vector<Api_capabilities*> compiler_types; // the two below, as often as reported
    Api_capabilities openglessl{"openglessl"};
    Api_capabilities opencl{"opencl"};
    const char* flexible_version = nullptr;
    bool prerotate = false;

private:
    void read(std::string_view key, std::string_view value) {
        if (key == "compiler_type") {
            for (Api_capabilities* api : {&openglessl, &opencl})
                if (value == api->name)
                    compiler_types.push_back(api);
        } else if (key == "openglessl_version")
            openglessl.versions.push_back(value.data());
        else if (key == "opencl_version")
            opencl.versions.push_back(value.data());
        else if (key == "openglessl_extensions")
            openglessl.extensions.append(value).append(" ");
        else if (key == "opencl_extensions")
            opencl.extensions.append(value).append(" ");
        else if (key == "flexible_version")
            flexible_version = value.data();
        else if (key == "prerotate")
            prerotate = prerotate || value == "true";
        else if (key != "undefine" && key != "architecture")
            report_line("Unknown flexible capability. Key: ", key, ", Value: ", value);
    }
};

// A compiler that a plug-in reported: what orders it, and where it was reported.
struct Row {
    Vexacm_internal_compiler::Order_key key;
    std::uint32_t type;
    std::uint32_t core;
};

// Throws where a version is no number; the rows of the types before it are made
// by then.
void add_rows(const vexaoc_capabilities& capabilities, const Reported_capabilities& reported,
              std::vector<Row>* rows) {
    const std::uint32_t core_count = list_length(capabilities.num_cores, capabilities.cores);
    for (std::uint32_t type = 0; type < reported.compiler_types.size(); ++type) {
        reported.compiler_types[type]->convert_versions();
        rows->reserve(rows->size() + core_count);
        for (std::uint32_t core = 0; core < core_count; ++core) {
            const char* const core_name = text_or_empty(capabilities.cores[core].core_name);
            const char* const core_revision = text_or_empty(capabilities.cores[core].core_revision);
            if (!is_blacklisted(core_name))
                rows->push_back(
                    {Vexacm_internal_compiler::order_key(core_name, core_revision), type, core});
        }
    }
}

// Equals stay as they were reported, so that IDs do not depend on the standard
// library.
void sort_rows(std::vector<Row>* rows) {
    std::sort(rows->begin(), rows->end(), [](const Row& a, const Row& b) {
        return std::tie(b.key, a.type, a.core) < std::tie(a.key, b.type, b.core);
    });
}

struct Release_capabilities {
    void operator()(vexaoc_capabilities* capabilities) const {
        library->release_capabilities(capabilities);
    }
    const Vexacm_vexaoc_library* library;
};

} // namespace

// Delegates, so that the destructor runs also when loading throws.
Vexacm_compiler_manager::Vexacm_compiler_manager(std::string directory)
    : Vexacm_compiler_manager() {
    load_compilers(std::move(directory));
}

// A vector may destroy its elements in either direction; plug-ins close in the
// catalogue's order with every standard library.
Vexacm_compiler_manager::~Vexacm_compiler_manager() {
    for (Vexacm_internal_compiler& compiler : catalogue)
        compiler.release_library();
}

void Vexacm_compiler_manager::load_compilers(std::string directory) {
    const Vexacm_library_manager library_manager(std::move(directory));
    const auto libraries = library_manager.get_all_libraries();
    // Room for as many entries as plug-ins usually give: to grow is to move them
    // all, and takes longer than to make them.
    catalogue.reserve(libraries.size() * 32);
    // Deliberate: the first plug-in that fails ends the catalogue, and those
    // behind it are not looked at. Held by
    // Catalogue.AFailingPluginEndsTheCatalogueAndKeepsEarlierEntries.
    for (const auto& library : libraries)
        if (!add_library(library))
            return;
}

bool Vexacm_compiler_manager::add_library(const std::shared_ptr<Vexacm_vexaoc_library>& library) {
    vexaoc_capabilities capabilities;
    std::memset(&capabilities, 0, sizeof capabilities);
    if (library->get_capabilities(&capabilities) != 0) {
        report_line("Could not get capabilities of library at ", library->get_library_path(), ".");
        return false;
    }
    std::unique_ptr<vexaoc_capabilities, Release_capabilities> owner(&capabilities,
                                                                     {library.get()});
    Reported_capabilities reported(capabilities);

    // Deliberate: on the two ways out below the record is not handed back. Held
    // by Catalogue.DoesNotHandBackTheRecordWithoutAValidFlexibleVersion.
    if (!reported.flexible_version) {
        static_cast<void>(owner.release());
        report_line("Driver '", library->get_driver_name(),
                    "' doesn't report a flexible version string.");
        return false;
    }
    std::int32_t flexible[3] = {};
    if (read_version(reported.flexible_version, flexible, std::strtol) != 3) {
        static_cast<void>(owner.release());
        report_line(
            "Driver '", library->get_driver_name(),
            "' doesn't report a valid flexible version string: ", reported.flexible_version);
        return false;
    }

    vexaoc_api_version version = {};
    library->get_api_version(&version);

    std::vector<Row> rows;
    try {
        add_rows(capabilities, reported, &rows);
    } catch (...) {
        if (!rows.empty())
            unfinished = library;
        throw;
    }
    sort_rows(&rows);
    // Grown once a plug-in, and not in many steps that move what is there.
    const std::size_t size = catalogue.size() + rows.size();
    if (size > catalogue.capacity())
        catalogue.reserve(std::max(size, 2 * catalogue.capacity()));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        // Sorted, they lie anywhere in the plug-in's memory. Fetched ahead, 100,000
        // cores take two thirds of the time.
        if (i + 16 < rows.size()) {
            __builtin_prefetch(&capabilities.cores[rows[i + 16].core]);
            __builtin_prefetch(capabilities.cores[rows[i + 8].core].core_revision);
        }
        Api_capabilities& api = *reported.compiler_types[rows[i].type];
        const vexaoc_core& core = capabilities.cores[rows[i].core];
        if (!api.model)
            api.model.emplace(version.major, version.minor, version.patch, flexible[0], flexible[1],
                              flexible[2], library->get_driver_name(), "", "", api.name,
                              std::vector{api.highest_version}, api.extensions,
                              capabilities.binary_output_supported == 1, reported.prerotate,
                              library);
        catalogue.emplace_back(*api.model, text_or_empty(core.core_name),
                               text_or_empty(core.core_revision));
    }
    return true;
}

void Vexacm_compiler_manager::get_manager_version(vexacm_version* version) const {
    *version = {VEXACM_VERSION_MAJOR, VEXACM_VERSION_MINOR, VEXACM_VERSION_PATCH};
}

void Vexacm_compiler_manager::get_compilers(unsigned int** compilers, unsigned int* count,
                                            const char* driver_name, const char* core_name,
                                            const char* core_revision, const char* api_name,
                                            const char* binary_output,
                                            unsigned int api_version) const {
    if (!compilers || !count) {
        report_line("Compiler Manager Error: NULL inputs passed to get_compilers");
        return;
    }
    const Vexacm_internal_compiler::Filters filters(driver_name, core_name, core_revision, api_name,
                                                    binary_output, api_version);
    std::vector<unsigned int> matching;
    for (std::size_t id = 0; id < catalogue.size(); ++id)
        if (catalogue[id].matches(filters))
            matching.push_back(static_cast<unsigned int>(id));

    // Allocated first: when memory runs out neither output is written.
    auto* const ids = new unsigned int[matching.size()];
    std::copy(matching.begin(), matching.end(), ids);
    *count = static_cast<unsigned int>(matching.size());
    *compilers = ids;
}

void Vexacm_compiler_manager::release_compilers(unsigned int** compilers,
                                                unsigned int /*count*/) const {
    delete[] * compilers;
    *compilers = nullptr;
}

const char* Vexacm_compiler_manager::get_driver_name(unsigned int compiler_id) const {
    return catalogue[compiler_id].get_driver_name();
}

const char* Vexacm_compiler_manager::get_core_name(unsigned int compiler_id) const {
    return catalogue[compiler_id].get_core_name();
}

const char* Vexacm_compiler_manager::get_core_revision(unsigned int compiler_id) const {
    return catalogue[compiler_id].get_core_revision();
}

const char* Vexacm_compiler_manager::get_api_name(unsigned int compiler_id) const {
    return catalogue[compiler_id].get_api_name();
}

unsigned int Vexacm_compiler_manager::get_highest_api_version(unsigned int compiler_id) const {
    return catalogue[compiler_id].get_highest_api_version();
}

const char* Vexacm_compiler_manager::get_extensions(unsigned int compiler_id) {
    return catalogue[compiler_id].get_extensions();
}

bool Vexacm_compiler_manager::is_binary_output_supported(unsigned int compiler_id) const {
    return catalogue[compiler_id].is_binary_output_supported();
}

bool Vexacm_compiler_manager::is_prerotate_supported(unsigned int compiler_id) const {
    return catalogue[compiler_id].is_prerotate_supported();
}

bool Vexacm_compiler_manager::compile(vexaoc_outputs* outputs, const char* source,
                                      const char* shader_type, const char* const* kernel_names,
                                      int num_kernel_names, bool binary_output, bool prerotate,
                                      const char* const* defines, int num_defines,
                                      unsigned int compiler_id) {
    return catalogue[compiler_id].compile(outputs, source, shader_type, kernel_names,
                                          num_kernel_names, binary_output, prerotate, defines,
                                          num_defines);
}

void Vexacm_compiler_manager::release_compiler_outputs(vexaoc_outputs* outputs) const {
    Vexacm_internal_compiler::release_compiler_outputs(outputs);
}

} // namespace VexaCM
