// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "captured_stderr.hpp"
#include "plugin_directory.hpp"
#include "vexacm.h"

// Three drivers, as the catalogue orders them.
constexpr const char* NEWEST = "Vexa-K300_r5p0-06rel0";
constexpr const char* MIDDLE = "Vexa-K300_r4p0-00rel0";
constexpr const char* OLDEST = "Vexa-K300_r1p0-00rel0";

/// Plug-ins with one compiler, for revision r0p0_00rel0 of core k46x. With null
/// extensions it reports none, and they are probed. Their record is open.
Fake_plugin gles_plugin(const char* version = "320", const char* extensions = "GL_X");
Fake_plugin opencl_plugin(const char* version = "200", const char* extensions = "cl_x");

/// The lines of the log that name these calls of one plug-in.
std::string calls(std::string_view api, std::string_view driver_name,
                  const std::vector<std::string>& calls);

/// What a plug-in sees while the library is initialised: first every plug-in is
/// opened and checked, then each is asked for its compilers.
std::string calls_when_opened(std::string_view api, std::string_view driver_name);
std::string calls_when_listed(std::string_view api, std::string_view driver_name);

/// A compile as the log names it, for the compilers of the plug-ins above.
std::string compile_call(const std::vector<std::string>& options, std::string_view source,
                         bool binary = false, std::string_view core = "k46x",
                         std::string_view revision = "r0p0_00rel0");

/// The lines with this text in them: in a log of several plug-ins the order of
/// some calls is not settled, that of one plug-in's is.
std::string lines_of(std::string_view log, std::string_view part);

/// The filters of vexacm_get_compilers().
struct Filters {
    const char* driver_name = nullptr;
    const char* core_name = nullptr;
    const char* core_revision = nullptr;
    const char* api_name = nullptr;
    const char* binary_output = nullptr;
    unsigned int api_version = 0;
};

/// The IDs that pass; the library's array is handed back.
std::vector<unsigned int> find_compilers(const Filters& filters = {});

/// Every compiler with all that is known of it but its extensions, a line each
/// in the order of the IDs: "DRIVER CORE REVISION API VERSION", and " binary"
/// and " prerotate" where they are supported.
std::string catalogue();

/// What a caller asks to have compiled.
struct Request {
    explicit Request(const char* type = "fragment") : shader_type(type) {}

    Request& of(const char* text) { return source = text, *this; }
    Request& kernels(std::vector<const char*> names) { return kernel_names = names, *this; }
    Request& num_kernels(int count) { return num_kernel_names = count, *this; }
    Request& define(std::vector<const char*> texts) { return defines = texts, *this; }
    Request& num_definitions(int count) { return num_defines = count, *this; }
    Request& binary(bool wanted = true) { return binary_output = wanted, *this; }
    Request& rotated(bool wanted = true) { return prerotate = wanted, *this; }

    bool compile(vexaoc_outputs* outputs, unsigned int compiler_id) const;

    const char* source = "void main() {}";
    const char* shader_type;
    std::vector<const char*> kernel_names;
    std::optional<int> num_kernel_names; ///< the true number when it is not set
    std::vector<const char*> defines;
    std::optional<int> num_defines;
    bool binary_output = false;
    bool prerotate = false;
};

/// A caller's record: junk until it is compiled into, released at its end. The
/// library has to be initialised then.
class Outputs {
public:
    Outputs();
    ~Outputs();
    Outputs(const Outputs&) = delete;
    Outputs& operator=(const Outputs&) = delete;

    bool compile(const Request& request, unsigned int compiler_id = 0);
    void release();

    /// Whether all bytes are zero, padding included.
    bool is_zeroed() const;

    /// "list(a,b) binary(00ff) a(text) b(text)", of which empty parts are left
    /// out; null texts are "(null)".
    std::string text() const;

    vexaoc_outputs record;

private:
    bool compiled = false;
};

/// The library on one plug-in, driver NEWEST, whose initialisation is silent;
/// released at the end. The log begins after the initialisation.
class One_plugin {
public:
    explicit One_plugin(const Fake_plugin& plugin, std::string_view api = "openglessl");
    ~One_plugin();
    One_plugin(const One_plugin&) = delete;
    One_plugin& operator=(const One_plugin&) = delete;

    /// The calls since the last time, without the plug-in's name before each.
    std::string take_calls();

    Plugin_directory plugins;

private:
    std::string label;
};

/// A plug-in directory to fill, and a library that is released in the end.
class Api_test : public testing::Test {
protected:
    ~Api_test() override;

    /// Initialises the library, which has to succeed; tells what was written to
    /// standard error.
    std::string initialise();
    static std::string initialise(const std::string& root);

    /// Initialises the library, whose exception must be of that type; returns
    /// its text.
    template <class Exception>
    static std::string initialise_throws(const char* root) {
        try {
            vexacm_initialize_libraries(root);
        } catch (const Exception& exception) {
            return exception.what();
        }
        ADD_FAILURE() << "no exception";
        return {};
    }

    std::string file(std::string_view api, std::string_view driver_name) const;

    Plugin_directory plugins;
};
