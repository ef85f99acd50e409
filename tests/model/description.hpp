// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What lies in a generated plug-in directory. The steering of each plug-in is
/// told as data, so that it can be written to a file and reasoned about alike.
namespace model {

/// A C string; without a value, a null pointer.
using Text = std::optional<std::string>;

/// A list as a plug-in hands it over: the count may be less than what is there,
/// and the array may be missing beside it.
template <class Element>
struct Array {
    std::vector<Element> elements;
    std::optional<std::uint32_t> count; ///< told instead of the true one
    bool null = false;                  ///< no array, whatever the count

    /// What a reader gets to see: nothing, where there is no array.
    std::vector<Element> seen() const {
        if (null)
            return {};
        const auto end =
            elements.begin() + static_cast<std::ptrdiff_t>(count.value_or(elements.size()));
        return {elements.begin(), end};
    }
};

struct Core {
    Text name;
    Text revision;
};

/// The capability record of one call and the calls after it.
struct Record {
    unsigned from_call = 1;
    int result = 0;
    std::vector<std::string> says;
    std::uint32_t binary = 0;
    Array<Core> cores;
    Array<Text> entries;

    void pair(const Text& key, const Text& value) {
        entries.elements.push_back(key);
        entries.elements.push_back(value);
    }
};

/// What comes of compiling a source in which the word occurs.
struct Outcome {
    std::string word;
    int result = 0;
    std::vector<std::string> says;
    Array<Array<Text>> lists;
    Array<char> binary;
    Array<Text> a;
    Array<Text> b;
};

/// A file with ".so" in its name.
struct Plugin {
    enum class Kind {
        fake,             ///< exports all five functions
        lacks_a_function, ///< opens, but exports only four
        lacks_a_library,  ///< needs a library that is not there
        text,             ///< a text file
        folder,           ///< a directory
        dangling,         ///< a symbolic link to nothing
    };
    Kind kind = Kind::fake;
    std::string api; ///< the subdirectory
    std::string file_name;
    std::string missing_function;
    std::uint32_t version[3] = {1, 0, 0};
    Text say_on_load;
    Text say_on_unload;
    std::vector<Record> records;   ///< ascending in from_call, the first from 1
    std::vector<Outcome> outcomes; ///< the first that fits counts
    std::string load_error;        ///< the loader's text, where it does not open

    bool opens() const { return kind == Kind::fake || kind == Kind::lacks_a_function; }
};

struct Directory {
    std::string root; ///< as told to the library
    bool has_openglessl = true;
    bool has_opencl = true;
    std::vector<Plugin> plugins; ///< in the order in which they are found

    bool has(const std::string& api) const {
        return api == "openglessl" ? has_openglessl : has_opencl;
    }
};

/// The path of a subdirectory, as the library spells it.
std::string subdirectory(const Directory& directory, const std::string& api);

/// The path of a plug-in, as the library spells it.
std::string path(const Directory& directory, const Plugin& plugin);

} // namespace model
