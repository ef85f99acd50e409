// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace vexacm_tool {

/// What lies in a cache, as it was found when it was looked through.
class Contents {
public:
    explicit Contents(const std::string& folder);

    std::size_t entries() const { return entries_.size(); }
    std::size_t unfinished() const { return unfinished_.size(); }
    std::uint64_t blocks() const { return blocks_; } ///< of the entries

    /// Removes the entries that were not used for longest until the others take no
    /// more blocks than these, and what was being written for too long.
    void trim(std::uint64_t most_blocks);

    /// Removes all of it, whoever uses it.
    void clear();

    /// The number of why something could not be removed, or 0.
    int error() const { return error_; }

private:
    struct File {
        std::string path;
        timespec used;
        std::uint64_t blocks;
    };

    void look_through(const std::string& folder);
    bool remove(const File& file);
    template <class Condition>
    void remove_if(std::vector<File>& files, Condition condition);

    std::vector<File> entries_;
    std::vector<File> unfinished_;
    std::vector<std::string> folders_;
    std::uint64_t blocks_ = 0;
    int error_ = 0;
};

} // namespace vexacm_tool
