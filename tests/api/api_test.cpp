// SPDX-License-Identifier: MIT
#include "api_test.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

std::string label_of(std::string_view api, std::string_view driver_name) {
    return std::string(api) + "/lib" + std::string(driver_name) + ".so ";
}

// As the log writes texts.
std::string encode(std::string_view text) {
    std::string encoded;
    for (const char character : text) {
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(character));
        encoded +=
            character <= ' ' || character == '%' ? std::string(code) : std::string(1, character);
    }
    return encoded;
}

std::string joined(std::uint32_t count, char* const* texts) {
    std::string joined;
    for (std::uint32_t i = 0; i < count; ++i)
        joined.append(i ? "," : "").append(texts[i] ? texts[i] : "(null)");
    return joined;
}

} // namespace

Fake_plugin gles_plugin(const char* version, const char* extensions) {
    Fake_plugin plugin = Fake_plugin::of_type("openglessl");
    plugin.core("k46x", "r0p0_00rel0").pair("openglessl_version", version);
    if (extensions)
        plugin.pair("openglessl_extensions", extensions);
    return plugin;
}

Fake_plugin opencl_plugin(const char* version, const char* extensions) {
    Fake_plugin plugin = Fake_plugin::of_type("opencl");
    plugin.core("k46x", "r0p0_00rel0").pair("opencl_version", version);
    if (extensions)
        plugin.pair("opencl_extensions", extensions);
    return plugin;
}

std::string calls(std::string_view api, std::string_view driver_name,
                  const std::vector<std::string>& calls) {
    std::string lines;
    for (const std::string& call : calls)
        lines += label_of(api, driver_name) + call + "\n";
    return lines;
}

std::string calls_when_opened(std::string_view api, std::string_view driver_name) {
    return calls(api, driver_name,
                 {"load", "get_api_version", "get_capabilities", "release_capabilities"});
}

std::string calls_when_listed(std::string_view api, std::string_view driver_name) {
    return calls(api, driver_name, {"get_capabilities", "get_api_version", "release_capabilities"});
}

std::string compile_call(const std::vector<std::string>& options, std::string_view source,
                         bool binary, std::string_view core, std::string_view revision) {
    std::string call = "compile core=" + encode(core) + " revision=" + encode(revision) +
                       " binary=" + (binary ? "1" : "0") +
                       " outputs=zeroed options=" + std::to_string(options.size());
    for (const std::string& option : options)
        call += " " + encode(option);
    return call + " source=" + encode(source);
}

std::string lines_of(std::string_view log, std::string_view part) {
    std::string lines;
    while (!log.empty()) {
        const std::string_view line = log.substr(0, log.find('\n') + 1);
        if (line.find(part) != std::string_view::npos)
            lines += line;
        log.remove_prefix(line.size());
    }
    return lines;
}

std::vector<unsigned int> find_compilers(const Filters& filters) {
    unsigned int* ids = nullptr;
    unsigned int count = 0;
    vexacm_get_compilers(&ids, &count, filters.driver_name, filters.core_name,
                         filters.core_revision, filters.api_name, filters.binary_output,
                         filters.api_version);
    EXPECT_NE(ids, nullptr);
    const std::vector<unsigned int> found(ids, ids + count);
    vexacm_release_compilers(&ids, count);
    EXPECT_EQ(ids, nullptr);
    return found;
}

std::string catalogue() {
    std::string text;
    unsigned int expected_id = 0;
    for (const unsigned int id : find_compilers()) {
        EXPECT_EQ(id, expected_id++);
        text.append(vexacm_get_driver_name(id)).append(" ");
        text.append(vexacm_get_core_name(id)).append(" ");
        text.append(vexacm_get_core_revision(id)).append(" ");
        text.append(vexacm_get_api_name(id)).append(" ");
        text.append(std::to_string(vexacm_get_highest_api_version(id)));
        text.append(vexacm_is_binary_output_supported(id) ? " binary" : "");
        text.append(vexacm_is_prerotate_supported(id) ? " prerotate" : "");
        text.append("\n");
    }
    return text;
}

bool Request::compile(vexaoc_outputs* outputs, unsigned int compiler_id) const {
    return vexacm_compile(outputs, source, shader_type, kernel_names.data(),
                          num_kernel_names.value_or(static_cast<int>(kernel_names.size())),
                          binary_output, prerotate, defines.data(),
                          num_defines.value_or(static_cast<int>(defines.size())), compiler_id);
}

Outputs::Outputs() {
    std::memset(&record, 0xA5, sizeof record);
}

Outputs::~Outputs() {
    release();
}

bool Outputs::compile(const Request& request, unsigned int compiler_id) {
    release();
    std::memset(&record, 0xA5, sizeof record);
    compiled = true;
    return request.compile(&record, compiler_id);
}

void Outputs::release() {
    if (compiled)
        vexacm_release_compiler_outputs(&record);
    compiled = false;
}

bool Outputs::is_zeroed() const {
    static constexpr char zeroes[sizeof record] = {};
    return std::memcmp(&record, zeroes, sizeof record) == 0;
}

std::string Outputs::text() const {
    std::string text;
    for (std::uint32_t i = 0; i < record.num_string_lists; ++i) {
        const vexaoc_string_list& list = record.string_lists[i];
        text += " list(" + joined(list.num_strings, list.strings) + ")";
    }
    if (record.binary_size) {
        text += " binary(";
        for (std::uint32_t i = 0; i < record.binary_size; ++i) {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02x", record.binary[i]);
            text += digits;
        }
        text += ")";
    }
    if (record.num_strings_a)
        text += " a(" + joined(record.num_strings_a, record.strings_a) + ")";
    if (record.num_strings_b)
        text += " b(" + joined(record.num_strings_b, record.strings_b) + ")";
    return text.empty() ? text : text.substr(1);
}

One_plugin::One_plugin(const Fake_plugin& plugin, std::string_view api)
    : label(label_of(api, NEWEST)) {
    plugins.add_driver(api, NEWEST, plugin);
    EXPECT_EQ(
        stderr_of([this] { EXPECT_TRUE(vexacm_initialize_libraries(plugins.root().c_str())); }),
        "");
    plugins.take_log();
}

One_plugin::~One_plugin() {
    vexacm_release_libraries();
}

std::string One_plugin::take_calls() {
    std::string log = plugins.take_log();
    for (std::size_t at = 0; (at = log.find(label, at)) != std::string::npos;)
        log.erase(at, label.size());
    return log;
}

Api_test::~Api_test() {
    vexacm_release_libraries();
}

std::string Api_test::initialise() {
    return initialise(plugins.root());
}

std::string Api_test::initialise(const std::string& root) {
    return stderr_of([&] { EXPECT_TRUE(vexacm_initialize_libraries(root.c_str())); });
}

std::string Api_test::file(std::string_view api, std::string_view driver_name) const {
    return plugins.path(api, "lib" + std::string(driver_name) + ".so");
}
