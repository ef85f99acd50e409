// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Writes the steering file of a fake plug-in, a line a call; see
/// tests/fake_plugin/steering.md for what each line does. Null texts become
/// null pointers.
class Fake_plugin {
public:
    /// A plug-in that reports one compiler type with one flexible version, and
    /// nothing else yet; its record is open for cores and pairs.
    static Fake_plugin of_type(std::string_view compiler_type);

    Fake_plugin& api_version(std::uint32_t major, std::uint32_t minor, std::uint32_t patch);
    Fake_plugin& say_on_load(std::string_view text);
    Fake_plugin& say_on_unload(std::string_view text);

    /// Begin a section.
    Fake_plugin& record(int call = 1);
    Fake_plugin& outputs(std::string_view source_word = "");

    /// For both sections.
    Fake_plugin& result(int result);
    Fake_plugin& say(std::string_view text);
    Fake_plugin& act(std::string_view action) { return line("do " + std::string(action)); }

    /// For a record.
    Fake_plugin& binary_output(std::uint32_t supported);
    Fake_plugin& core(const char* name, const char* revision);
    Fake_plugin& pair(const char* key, const char* value);
    Fake_plugin& text(const char* text);
    Fake_plugin& num_cores(std::uint32_t count);
    Fake_plugin& num_entries(std::uint32_t count);
    Fake_plugin& null_cores();
    Fake_plugin& null_entries();

    /// For outputs.
    Fake_plugin& a(const char* text);
    Fake_plugin& b(const char* text);
    Fake_plugin& list();
    Fake_plugin& item(const char* text);
    Fake_plugin& binary(std::string_view bytes);

    /// Any other line, its words not encoded.
    Fake_plugin& line(std::string_view line);

    const std::string& steering() const { return lines; }

private:
    Fake_plugin& directive(std::string_view name, const char* first = "", const char* second = "");
    Fake_plugin& directive(std::string_view name, std::string_view word);
    Fake_plugin& directive(std::string_view name, std::int64_t number);

    std::string lines;
};
