// SPDX-License-Identifier: MIT
#pragma once

#include "folder.hpp"
#include "key.hpp"
#include "plugin_digests.hpp"

#include "../compiled.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace vexacm_tool {

/// Where a cache is and how large it may be.
struct Cache_settings {
    std::optional<std::string> directory; ///< none: no cache
    unsigned int megabytes = 1024;
};

/// Keeps what compiles gave, for any number of processes at once. Entries appear
/// whole and are checked when they are read: there is no lock that anyone waits for.
class Cache {
public:
    /// To be opened before the plug-ins of that directory. Throws Failure.
    Cache(const Cache_settings& settings, const std::string& plugins);

    /// Has to come before the key of a compile with it.
    void read_plugin(const Compiler& compiler) { plugins_.read(compiler); }

    /// What a result is kept under. Empty when it must not be.
    std::string key(const vexacm::Request& request, const Compiler& compiler) const;

    /// Counts as a use of it.
    std::optional<Compiled> find(const std::string& key) const;

    /// How storing went: whether there is more in the cache now, or the number of why
    /// there is not.
    struct Stored {
        bool is_done = false;
        int error = 0;
    };
    Stored store(const std::string& key, const Compiled& compiled) const;

    /// Removes what was not used for longest when more is stored than there may be.
    /// To be called when something was stored.
    void keep_limit();

    /// Says that it takes no entries.
    void tell_error(int error) const;

private:
    std::string named_;
    Cache_folder folder_;
    std::uint64_t most_blocks_;
    Plugin_digests plugins_;
    bool is_stuck_ = false; ///< what is too much cannot be removed
};

} // namespace vexacm_tool
