// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <vexacm.h>

/// Owners for all that vexacm.h hands out, for C++17. Each gives back what it
/// holds through the matching release function, so let none outlive the Library.
/// What each function does and tells on standard error stands in vexacm.h.
namespace vexacm {

/// The initialised library. Have one at a time.
class Library {
public:
    /// Throws what vexacm_initialize_libraries() throws.
    explicit Library(const std::string& directory) {
        vexacm_initialize_libraries(directory.c_str());
    }
    ~Library() { vexacm_release_libraries(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

/// Which compilers are wanted; what is not set lets every one pass.
struct Filters {
    std::optional<std::string> driver;
    std::optional<std::string> core;
    std::optional<std::string> revision;
    std::optional<std::string> api;
    std::optional<std::string> binary_output; ///< "true" or "false"
    unsigned int min_version = 0;
};

/// An array of compiler IDs.
class Compiler_ids {
public:
    explicit Compiler_ids(const Filters& filters = {}) {
        unsigned int* ids = nullptr;
        vexacm_get_compilers(&ids, &count, text(filters.driver), text(filters.core),
                             text(filters.revision), text(filters.api), text(filters.binary_output),
                             filters.min_version);
        owner.reset(ids);
    }

    unsigned int size() const { return count; }
    bool empty() const { return count == 0; }
    const unsigned int* begin() const { return owner.get(); }
    const unsigned int* end() const { return owner.get() + count; }

private:
    struct Release {
        void operator()(unsigned int* ids) const { vexacm_release_compilers(&ids, 0); }
    };

    static const char* text(const std::optional<std::string>& filter) {
        return filter ? filter->c_str() : nullptr;
    }

    unsigned int count = 0;
    std::unique_ptr<unsigned int[], Release> owner;
};

/// The properties of one compiler; the texts are the library's own.
struct Compiler {
    /// The ID must be one that Compiler_ids holds.
    explicit Compiler(unsigned int id_)
        : id(id_), driver(vexacm_get_driver_name(id)), core(vexacm_get_core_name(id)),
          revision(vexacm_get_core_revision(id)), api(vexacm_get_api_name(id)),
          version(vexacm_get_highest_api_version(id)),
          binary_output(vexacm_is_binary_output_supported(id)),
          prerotate(vexacm_is_prerotate_supported(id)) {}

    /// May compile test sources the first time.
    const char* extensions() const { return vexacm_get_extensions(id); }

    unsigned int id;
    const char* driver;
    const char* core;
    const char* revision;
    const char* api;
    unsigned int version;
    bool binary_output;
    bool prerotate;
};

/// What a compile gave: a vexaoc_outputs that is released once.
class Outputs {
public:
    Outputs() = default;
    ~Outputs() { vexacm_release_compiler_outputs(&record); }
    Outputs(Outputs&& other) noexcept : record(std::exchange(other.record, {})) {}
    Outputs& operator=(Outputs&& other) noexcept {
        std::swap(record, other.record);
        return *this;
    }

    /// To be filled by vexacm_compile(), once.
    vexaoc_outputs* get() { return &record; }
    const vexaoc_outputs* operator->() const { return &record; }
    const vexaoc_outputs& operator*() const { return record; }

    /// No errors: the source compiled.
    bool compiled() const { return record.num_strings_a == 0; }
    std::string_view binary() const {
        return {reinterpret_cast<const char*>(record.binary), record.binary_size};
    }

private:
    vexaoc_outputs record{};
};

/// One compile request.
struct Request {
    std::string source;
    std::string stage; ///< the shader_type of vexacm_compile()
    std::vector<std::string> kernels = {};
    std::vector<std::string> defines = {};
    bool binary_output = false;
    bool prerotate = false;
};

/// The results, or nothing when the request was not carried out.
inline std::optional<Outputs> compile(const Request& request, unsigned int compiler_id) {
    const auto pointers = [](const std::vector<std::string>& texts) {
        std::vector<const char*> result;
        for (const std::string& text : texts)
            result.push_back(text.c_str());
        return result;
    };
    const auto kernels = pointers(request.kernels);
    const auto defines = pointers(request.defines);
    Outputs outputs;
    if (!vexacm_compile(outputs.get(), request.source.c_str(), request.stage.c_str(),
                        kernels.data(), static_cast<int>(kernels.size()), request.binary_output,
                        request.prerotate, defines.data(), static_cast<int>(defines.size()),
                        compiler_id))
        return std::nullopt;
    return outputs;
}

} // namespace vexacm
