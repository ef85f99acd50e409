// SPDX-License-Identifier: MIT
#include "caller.hpp"

#include <cstring>
#include <stdexcept>

#include "captured_stderr.hpp"
#include "vexacm.h"

namespace model {

namespace {

/// Overwritten, or else told as untouched.
template <class Value>
class Marked {
public:
    Marked() {
        std::memset(&value, MARK, sizeof value);
        std::memset(&before, MARK, sizeof before);
    }
    bool is_untouched() const { return std::memcmp(&value, &before, sizeof value) == 0; }

    Value value;

private:
    static const int MARK = 0x5a;
    Value before;
};

const char* c_string(const Text& text) {
    return text ? text->c_str() : nullptr;
}

Text text(const char* string) {
    return string ? Text(string) : std::nullopt;
}

std::vector<const char*> c_strings(const std::vector<std::string>& texts) {
    std::vector<const char*> strings;
    for (const std::string& that : texts)
        strings.push_back(that.c_str());
    return strings;
}

std::vector<Text> texts(std::uint32_t count, char** strings) {
    std::vector<Text> copied;
    for (std::uint32_t i = 0; i < count; ++i)
        copied.push_back(text(strings[i]));
    return copied;
}

bool is_zeroed(const vexaoc_outputs& outputs) {
    const vexaoc_outputs zeroed = {};
    return std::memcmp(&outputs, &zeroed, sizeof outputs) == 0;
}

/// A part that holds nothing is a null pointer, while an empty list among the
/// string lists has an array, an empty one.
bool has_odd_array(const vexaoc_outputs& outputs) {
    for (std::uint32_t i = 0; i < outputs.num_string_lists; ++i)
        if (!outputs.string_lists[i].strings)
            return true;
    return (outputs.num_string_lists == 0 && outputs.string_lists) ||
           (outputs.binary_size == 0 && outputs.binary) ||
           (outputs.num_strings_a == 0 && outputs.strings_a) ||
           (outputs.num_strings_b == 0 && outputs.strings_b);
}

Outputs copy(const vexaoc_outputs& outputs) {
    Outputs copied;
    for (std::uint32_t i = 0; i < outputs.num_string_lists; ++i)
        copied.lists.push_back(
            texts(outputs.string_lists[i].num_strings, outputs.string_lists[i].strings));
    for (std::uint32_t i = 0; i < outputs.binary_size; ++i)
        copied.binary += static_cast<char>(outputs.binary[i]);
    copied.a = texts(outputs.num_strings_a, outputs.strings_a);
    copied.b = texts(outputs.num_strings_b, outputs.strings_b);
    return copied;
}

} // namespace

Reply Caller::answer(const Request& request) {
    files.take_log();
    Reply reply;
    Captured_stderr captured;
    reply.result = std::visit([&](const auto& that) { return answer(that); }, request);
    reply.err = captured.take();
    reply.log = files.take_log();
    return reply;
}

std::string Caller::answer(const Initialise&) {
    try {
        const bool result = vexacm_initialize_libraries(directory.root.c_str());
        initialised = true;
        return shown(result);
    } catch (const std::invalid_argument& problem) {
        return std::string("invalid argument: ") + problem.what();
    } catch (const std::out_of_range& problem) {
        return std::string("out of range: ") + problem.what();
    }
}

std::string Caller::answer(const Release&) {
    vexacm_release_libraries();
    initialised = false;
    return "";
}

std::string Caller::answer(const Manager_version&) {
    Marked<vexacm_version> version;
    vexacm_get_manager_version(&version.value);
    if (version.is_untouched())
        return "untouched";
    return std::to_string(version.value.major) + "." + std::to_string(version.value.minor) + "." +
           std::to_string(version.value.patch);
}

std::string Caller::answer(const List_compilers& request) {
    Marked<unsigned*> ids;
    Marked<unsigned> count;
    vexacm_get_compilers(
        request.null_compilers ? nullptr : &ids.value, request.null_count ? nullptr : &count.value,
        c_string(request.driver_name), c_string(request.core_name), c_string(request.core_revision),
        c_string(request.api_name), c_string(request.binary_output), request.version);
    if (ids.is_untouched() && count.is_untouched())
        return "untouched";
    if (!ids.value)
        return "no array";
    const std::vector<unsigned> copied(ids.value, ids.value + count.value);
    vexacm_release_compilers(&ids.value, count.value);
    return ids.value ? "not released" : shown(copied);
}

std::string Caller::answer(const Release_list&) {
    unsigned mine = 1;
    unsigned* ids = initialised ? nullptr : &mine;
    vexacm_release_compilers(&ids, 1);
    return ids == &mine ? "untouched" : "null";
}

std::string Caller::answer(const Release_outputs&) {
    Marked<vexaoc_outputs> outputs;
    vexacm_release_compiler_outputs(&outputs.value);
    return outputs.is_untouched() ? "untouched" : "touched";
}

std::string Caller::answer(const Ask& request) {
    switch (request.property) {
    case Property::driver_name:
        return shown(text(vexacm_get_driver_name(request.id)));
    case Property::core_name:
        return shown(text(vexacm_get_core_name(request.id)));
    case Property::core_revision:
        return shown(text(vexacm_get_core_revision(request.id)));
    case Property::api_name:
        return shown(text(vexacm_get_api_name(request.id)));
    case Property::highest_version:
        return std::to_string(vexacm_get_highest_api_version(request.id));
    case Property::extensions:
        return shown(text(vexacm_get_extensions(request.id)));
    case Property::binary_output:
        return shown(vexacm_is_binary_output_supported(request.id));
    case Property::prerotate:
        return shown(vexacm_is_prerotate_supported(request.id));
    }
    throw std::logic_error("no such property");
}

std::string Caller::answer(const Compile& request) {
    const std::vector<const char*> kernel_names = c_strings(request.kernel_names);
    const std::vector<const char*> defines = c_strings(request.defines);
    Marked<vexaoc_outputs> outputs;
    const bool done = vexacm_compile(
        request.null_outputs ? nullptr : &outputs.value, c_string(request.source),
        c_string(request.shader_type), kernel_names.empty() ? nullptr : kernel_names.data(),
        request.num_kernel_names, request.binary_output, request.prerotate,
        defines.empty() ? nullptr : defines.data(), request.num_defines, request.id);
    if (request.null_outputs && initialised)
        return shown(done);
    if (outputs.is_untouched())
        return shown(done) + ", untouched";
    std::string result = shown(done) + ", ";
    if (has_odd_array(outputs.value))
        result += "odd arrays, ";
    result += !done && is_zeroed(outputs.value) ? "zeroed" : shown(copy(outputs.value));
    vexacm_release_compiler_outputs(&outputs.value);
    return result;
}

} // namespace model
