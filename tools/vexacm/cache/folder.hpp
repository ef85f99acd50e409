// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace vexacm_tool {

/// A folder that holds a cache and is marked as one: nothing is ever written to or
/// removed from another. In it:
///
///     CACHEDIR.TAG  the mark, which backups know too
///     blocks        as many bytes as blocks are taken, and a byte more
///     12/3456...    an entry: the 32 digits of its key
///     new-1234...   what is being written
///
struct Cache_folder {
    std::string path;    ///< from the root, so that it stays where it is
    int is_unmarked = 0; ///< it is empty and cannot be marked: the number of the reason
};

/// Makes the folder when it is missing and marks it when it is empty. Throws Failure
/// when it is no cache.
Cache_folder open_cache_folder(const std::string& named);

/// The same, and makes nothing.
std::string existing_cache_folder(const std::string& named);

/// Writes a file in the folder, which appears whole or not at all. `fill` gets the open
/// file and returns 0 or the number of what went wrong, and so does this.
int put_file(const std::string& folder, const std::string& name,
             const std::function<int(int file)>& fill);
int write_bytes(int file, std::string_view bytes);

/// Whether it is the name of a file that is being written.
bool is_unfinished(const std::string& name);

/// Where in the folder an entry lies; whether these are the names of one.
std::string entry_name(const std::string& key);
bool is_entry_folder(const std::string& name);
bool is_entry(const std::string& name);

} // namespace vexacm_tool
