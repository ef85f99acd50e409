// SPDX-License-Identifier: MIT
#include "fake_plugin.hpp"

#include <cstdio>

namespace {

std::string encode(std::string_view text) {
    std::string encoded;
    for (const char character : text) {
        char code[4];
        std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned char>(character));
        const bool plain = character > ' ' && character < 0x7f && character != '%' &&
                           !(character == '-' && text.size() == 1);
        encoded += plain ? std::string(1, character) : std::string(code);
    }
    return encoded;
}

std::string encode_or_null(const char* text) {
    return text ? encode(text) : "-";
}

} // namespace

Fake_plugin Fake_plugin::of_type(std::string_view compiler_type) {
    Fake_plugin plugin;
    plugin.record().pair("compiler_type", std::string(compiler_type).c_str());
    plugin.pair("flexible_version", "1.0.0");
    return plugin;
}

Fake_plugin& Fake_plugin::line(std::string_view line) {
    lines.append(line).append("\n");
    return *this;
}

Fake_plugin& Fake_plugin::directive(std::string_view name, const char* first, const char* second) {
    return line(std::string(name) + " " + encode_or_null(first) + " " + encode_or_null(second));
}

Fake_plugin& Fake_plugin::directive(std::string_view name, std::string_view word) {
    return line(std::string(name) + " " + encode(word));
}

Fake_plugin& Fake_plugin::directive(std::string_view name, std::int64_t number) {
    return line(std::string(name) + " " + std::to_string(number));
}

Fake_plugin& Fake_plugin::api_version(std::uint32_t major, std::uint32_t minor,
                                      std::uint32_t patch) {
    return line("api " + std::to_string(major) + " " + std::to_string(minor) + " " +
                std::to_string(patch));
}

Fake_plugin& Fake_plugin::say_on_load(std::string_view text) {
    return directive("say-on-load", text);
}

Fake_plugin& Fake_plugin::say_on_unload(std::string_view text) {
    return directive("say-on-unload", text);
}

Fake_plugin& Fake_plugin::record(int call) {
    return directive("record", std::int64_t{call});
}

Fake_plugin& Fake_plugin::outputs(std::string_view source_word) {
    return directive("outputs", source_word);
}

Fake_plugin& Fake_plugin::result(int result) {
    return directive("result", std::int64_t{result});
}

Fake_plugin& Fake_plugin::say(std::string_view text) {
    return directive("say", text);
}

Fake_plugin& Fake_plugin::binary_output(std::uint32_t supported) {
    return directive("binary", std::int64_t{supported});
}

Fake_plugin& Fake_plugin::core(const char* name, const char* revision) {
    return directive("core", name, revision);
}

Fake_plugin& Fake_plugin::pair(const char* key, const char* value) {
    return directive("pair", key, value);
}

Fake_plugin& Fake_plugin::text(const char* text) {
    return directive("text", text);
}

Fake_plugin& Fake_plugin::num_cores(std::uint32_t count) {
    return directive("num-cores", std::int64_t{count});
}

Fake_plugin& Fake_plugin::num_entries(std::uint32_t count) {
    return directive("num-entries", std::int64_t{count});
}

Fake_plugin& Fake_plugin::null_cores() {
    return line("null-cores");
}

Fake_plugin& Fake_plugin::null_entries() {
    return line("null-entries");
}

Fake_plugin& Fake_plugin::a(const char* text) {
    return directive("a", text);
}

Fake_plugin& Fake_plugin::b(const char* text) {
    return directive("b", text);
}

Fake_plugin& Fake_plugin::list() {
    return line("list");
}

Fake_plugin& Fake_plugin::item(const char* text) {
    return directive("item", text);
}

Fake_plugin& Fake_plugin::binary(std::string_view bytes) {
    std::string hex;
    for (const char byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(byte));
        hex += digits;
    }
    return directive("binary", std::string_view(hex));
}
