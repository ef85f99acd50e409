// SPDX-License-Identifier: MIT
#include "contents.hpp"

#include "entry.hpp"
#include "folder.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <tuple>
#include <unistd.h>

namespace vexacm_tool {

namespace {

namespace fs = std::filesystem;

// Nobody writes a file for longer; and if so, it is only not stored. Nor do the clocks
// of two machines differ by more.
constexpr std::time_t HOUR = 3600;

// Names and what they are, links not followed.
template <class Visit>
void for_each_file(const std::string& folder, Visit visit) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        struct stat status {};
        if (::lstat(entry->path().c_str(), &status) == 0)
            visit(entry->path(), entry->path().filename().string(), status);
    }
}

} // namespace

Contents::Contents(const std::string& folder) {
    for_each_file(folder, [&](const fs::path& path, const std::string& name, const auto& status) {
        if (S_ISDIR(status.st_mode) && is_entry_folder(name))
            look_through(path.string());
        else if (!S_ISDIR(status.st_mode) && is_unfinished(name))
            unfinished_.push_back({path.string(), status.st_mtim, 0});
    });
}

void Contents::look_through(const std::string& folder) {
    folders_.push_back(folder);
    for_each_file(folder, [&](const fs::path& path, const std::string& name, const auto& status) {
        if (S_ISDIR(status.st_mode) || !is_entry(name))
            return;
        const auto blocks = blocks_of(static_cast<std::uint64_t>(status.st_size));
        entries_.push_back({path.string(), status.st_mtim, blocks});
        blocks_ += blocks;
    });
}

void Contents::trim(std::uint64_t most_blocks) {
    const std::time_t now = std::time(nullptr);
    // A use in the future was before the clock was put back: longer ago than all others.
    const auto age = [now](const File& file) {
        return std::make_tuple(file.used.tv_sec <= now + HOUR, file.used.tv_sec, file.used.tv_nsec);
    };
    std::sort(entries_.begin(), entries_.end(), [&](const File& one, const File& other) {
        return age(one) != age(other) ? age(one) < age(other) : one.path < other.path;
    });
    remove_if(entries_, [&](const File&) { return blocks_ > most_blocks; });
    remove_if(unfinished_,
              [now](const File& file) { return std::abs(now - file.used.tv_sec) > HOUR; });
}

void Contents::clear() {
    const auto any = [](const File&) { return true; };
    remove_if(entries_, any);
    remove_if(unfinished_, any);
    // Those with something else in them stay.
    for (const std::string& folder : folders_)
        ::rmdir(folder.c_str());
}

// Whether it is gone, by us or by another.
bool Contents::remove(const File& file) {
    if (::unlink(file.path.c_str()) != 0 && errno != ENOENT) {
        error_ = errno;
        return false;
    }
    blocks_ -= file.blocks;
    return true;
}

template <class Condition>
void Contents::remove_if(std::vector<File>& files, Condition condition) {
    files.erase(std::remove_if(files.begin(), files.end(),
                               [&](const File& file) { return condition(file) && remove(file); }),
                files.end());
}

} // namespace vexacm_tool
