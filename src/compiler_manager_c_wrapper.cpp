// SPDX-License-Identifier: MIT
#include <stdexcept>
#include <string_view>

#include "report.hpp"
#include "vexacm.h"
#include "vexacm_compiler_manager.hpp"

namespace {

using VexaCM::Vexacm_compiler_manager;

// Deliberate: the missing blank is part of the text. Held by
// Uninitialised.EveryFunctionSaysWhatToDo.
constexpr std::string_view initialize_error =
    "Compiler Manager Error: Please call vexacm_initialize_librariesbefore using other functions.";

// Deliberate: three functions have texts of their own, without the prefix and
// with the blank. Held by the same test.
constexpr std::string_view GET_COMPILERS_INITIALIZE_ERROR =
    "Please call vexacm_initialize_libraries before trying to get compilers.";
constexpr std::string_view RELEASE_COMPILERS_INITIALIZE_ERROR =
    "Please call vexacm_initialize_libraries before trying to release compilers.";
constexpr std::string_view COMPILE_INITIALIZE_ERROR =
    "Please call vexacm_initialize_libraries before trying to compile.";

// A plain pointer and no owner: a second initialisation leaves the first
// manager alive, and so does the end of the process, when plug-ins may already
// be gone.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
Vexacm_compiler_manager* compiler_manager = nullptr;

bool is_initialized(std::string_view error = initialize_error) {
    if (!compiler_manager)
        VexaCM::report_line(error);
    return compiler_manager != nullptr;
}

// Asks the manager about one compiler; null, 0 or false without a manager.
template <class Getter>
auto get(Getter getter, unsigned int compiler_id) -> decltype((compiler_manager->*getter)(0)) {
    if (!is_initialized())
        return {};
    return (compiler_manager->*getter)(compiler_id);
}

} // namespace

// No exception is caught here: what may leave each function is part of the
// interface.
extern "C" {

bool vexacm_initialize_libraries(const char* directory) {
    // As std::string says it where it looks at all.
    if (!directory)
        throw std::logic_error("basic_string: construction from null is not valid");
    // Deliberate: an earlier manager is neither released nor reused, and is
    // replaced only once the new one stands. Held by
    // Initialise.TwiceLeavesTheFirstManagerAlive.
    compiler_manager = new Vexacm_compiler_manager(directory);
    return compiler_manager != nullptr;
}

void vexacm_release_libraries(void) {
    delete compiler_manager;
    compiler_manager = nullptr;
}

void vexacm_get_manager_version(vexacm_version* version) {
    if (is_initialized())
        compiler_manager->get_manager_version(version);
}

void vexacm_get_compilers(unsigned int** compilers, unsigned int* count, const char* driver_name,
                          const char* core_name, const char* core_revision, const char* api_name,
                          const char* binary_output, unsigned int api_version) {
    if (is_initialized(GET_COMPILERS_INITIALIZE_ERROR))
        compiler_manager->get_compilers(compilers, count, driver_name, core_name, core_revision,
                                        api_name, binary_output, api_version);
}

void vexacm_release_compilers(unsigned int** compilers, unsigned int count) {
    if (is_initialized(RELEASE_COMPILERS_INITIALIZE_ERROR))
        compiler_manager->release_compilers(compilers, count);
}

const char* vexacm_get_driver_name(unsigned int compiler_id) {
    return get(&Vexacm_compiler_manager::get_driver_name, compiler_id);
}

const char* vexacm_get_core_name(unsigned int compiler_id) {
    return get(&Vexacm_compiler_manager::get_core_name, compiler_id);
}

const char* vexacm_get_core_revision(unsigned int compiler_id) {
    return get(&Vexacm_compiler_manager::get_core_revision, compiler_id);
}

const char* vexacm_get_api_name(unsigned int compiler_id) {
    return get(&Vexacm_compiler_manager::get_api_name, compiler_id);
}

unsigned int vexacm_get_highest_api_version(unsigned int compiler_id) {
    return get(&Vexacm_compiler_manager::get_highest_api_version, compiler_id);
}

const char* vexacm_get_extensions(unsigned int compiler_id) {
    return get(&Vexacm_compiler_manager::get_extensions, compiler_id);
}

bool vexacm_is_binary_output_supported(unsigned int compiler_id) {
    return get(&Vexacm_compiler_manager::is_binary_output_supported, compiler_id);
}

bool vexacm_is_prerotate_supported(unsigned int compiler_id) {
    return get(&Vexacm_compiler_manager::is_prerotate_supported, compiler_id);
}

bool vexacm_compile(vexaoc_outputs* outputs, const char* source, const char* shader_type,
                    const char* const* kernel_names, int num_kernel_names, bool binary_output,
                    bool prerotate, const char* const* defines, int num_defines,
                    unsigned int compiler_id) {
    if (!is_initialized(COMPILE_INITIALIZE_ERROR))
        return false;
    return compiler_manager->compile(outputs, source, shader_type, kernel_names, num_kernel_names,
                                     binary_output, prerotate, defines, num_defines, compiler_id);
}

void vexacm_release_compiler_outputs(vexaoc_outputs* outputs) {
    if (is_initialized())
        compiler_manager->release_compiler_outputs(outputs);
}

} // extern "C"
