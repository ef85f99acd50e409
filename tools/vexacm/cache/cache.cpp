// SPDX-License-Identifier: MIT
#include "cache.hpp"

#include "../streams.hpp"
#include "entry.hpp"
#include "limit.hpp"

#include <cerrno>
#include <cstring>
#include <new>
#include <sys/stat.h>

namespace vexacm_tool {

Cache::Cache(const Cache_settings& settings, const std::string& plugins)
    : named_(*settings.directory), folder_(open_cache_folder(named_)),
      most_blocks_(blocks_of(std::uint64_t{settings.megabytes} << 20)), plugins_(plugins) {}

std::string Cache::key(const vexacm::Request& request, const Compiler& compiler) const {
    const std::string& plugin = plugins_.of(compiler);
    return plugin.empty() ? std::string() : cache_key(request, compiler, plugin);
}

std::optional<Compiled> Cache::find(const std::string& key) const {
    if (key.empty())
        return std::nullopt;
    try {
        return read_entry(folder_.path + '/' + entry_name(key), key, most_blocks_);
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

// A file or a folder that someone cleared away meanwhile is no error.
Cache::Stored Cache::store(const std::string& key, const Compiled& compiled) const {
    if (key.empty())
        return {};
    if (folder_.is_unmarked != 0)
        return {false, folder_.is_unmarked};
    try {
        const Entry entry(key, compiled);
        if (entry.blocks() > most_blocks_)
            return {};
        const std::string name = entry_name(key);
        ::mkdir((folder_.path + '/' + name.substr(0, name.find('/'))).c_str(), 0777);
        const int error =
            put_file(folder_.path, name, [&](int file) { return entry.write_to(file); });
        if (error == 0)
            count_blocks(folder_.path, entry.blocks());
        return {error == 0, error == ENOENT ? 0 : error};
    } catch (const std::bad_alloc&) {
        return {false, ENOMEM};
    }
}

void Cache::keep_limit() {
    if (!is_stuck_)
        is_stuck_ = !vexacm_tool::keep_limit(folder_.path, most_blocks_);
}

void Cache::tell_error(int error) const {
    tell("the cache in '" + named_ + "' takes no entries: " + std::strerror(error));
}

} // namespace vexacm_tool
