// SPDX-License-Identifier: MIT
#include "plugin_digests.hpp"

#include "../digest.hpp"
#include "../plugin_files.hpp"

#include <exception>
#include <filesystem>

namespace vexacm_tool {

namespace {

namespace fs = std::filesystem;

std::string name_of_plugin(const Compiler& compiler) {
    return std::string(compiler.api) + '/' + compiler.driver;
}

bool same_time(const timespec& one, const timespec& other) {
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

bool is_unchanged(const std::string& file, const struct stat& before) {
    struct stat now {};
    return ::stat(file.c_str(), &now) == 0 && now.st_dev == before.st_dev &&
           now.st_ino == before.st_ino && now.st_size == before.st_size &&
           same_time(now.st_mtim, before.st_mtim) && same_time(now.st_ctim, before.st_ctim);
}

} // namespace

Plugin_digests::Plugin_digests(const std::string& directory) : directory_(directory) {
    for (const char* const api : {"openglessl", "opencl"}) {
        std::error_code error;
        fs::directory_iterator entry(fs::path(directory) / api, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
            const std::string file = entry->path().string();
            struct stat status {};
            if (::stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode))
                files_.emplace(file, status);
        }
    }
}

void Plugin_digests::read(const Compiler& compiler) {
    std::string& found = digests_[name_of_plugin(compiler)];
    if (!found.empty())
        return;
    try {
        found = digest(compiler);
    } catch (const std::exception&) {
        found.clear();
    }
}

const std::string& Plugin_digests::of(const Compiler& compiler) const {
    return digests_.at(name_of_plugin(compiler));
}

std::string Plugin_digests::digest(const Compiler& compiler) const {
    Digest all;
    bool is_one = false;
    for (const std::string& file : plugin_files(directory_, compiler)) {
        const auto before = files_.find(file);
        if (before == files_.end())
            continue;
        all.add(digest_of_file(file));
        if (!is_unchanged(file, before->second))
            return {};
        is_one = true;
    }
    return is_one ? all.text() : std::string();
}

} // namespace vexacm_tool
