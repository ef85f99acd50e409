// SPDX-License-Identifier: MIT
#include "plugin_files.hpp"

#include "digest.hpp"
#include "streams.hpp"

#include <algorithm>
#include <filesystem>

namespace vexacm_tool {

namespace fs = std::filesystem;

std::vector<std::string> plugin_files(const std::string& directory, const Compiler& compiler) {
    std::vector<std::string> files;
    // A folder that cannot be read to its end has no plug-in either.
    std::error_code unread;
    for (fs::directory_iterator entry(fs::path(directory) / compiler.api, unread), end;
         !unread && entry != end; entry.increment(unread)) {
        const std::string name = entry->path().filename().string();
        if (name.find(".so") != std::string::npos &&
            name.find(compiler.driver) != std::string::npos)
            files.push_back(entry->path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string digest_of_file(const std::string& file) {
    return Digest().add(read_any_bytes(file)).text();
}

} // namespace vexacm_tool
