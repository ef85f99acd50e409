// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vexacm.h>

// Owners for everything that the library hands out, for use in any C++ caller.
// Each gives back what it holds through the matching release function, so keep
// the Library alive longer than the others.
namespace vexacm_tool {

/// The initialised library. Have one at a time.
class Library {
public:
    explicit Library(const char* directory) { vexacm_initialize_libraries(directory); }
    ~Library() { vexacm_release_libraries(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

struct Release_compilers {
    void operator()(unsigned int* ids) const { vexacm_release_compilers(&ids, 0); }
};

/// An array of compiler IDs.
struct Compiler_ids {
    std::unique_ptr<unsigned int[], Release_compilers> ids;
    unsigned int count = 0;

    const unsigned int* begin() const { return ids.get(); }
    const unsigned int* end() const { return ids.get() + count; }
};

/// What a compile gave. It stays where it is: a copy would be released twice.
class Outputs {
public:
    Outputs() = default;
    ~Outputs() { vexacm_release_compiler_outputs(&record_); }
    Outputs(const Outputs&) = delete;
    Outputs& operator=(const Outputs&) = delete;

    vexaoc_outputs* get() { return &record_; }
    const vexaoc_outputs* operator->() const { return &record_; }
    const vexaoc_outputs& operator*() const { return record_; }

private:
    vexaoc_outputs record_{};
};

} // namespace vexacm_tool
