// SPDX-License-Identifier: MIT
#include "limit.hpp"

#include "../batch/descriptor.hpp"
#include "contents.hpp"
#include "folder.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace vexacm_tool {

namespace {

constexpr const char* COUNTER = "blocks";

// While others store more than fits, it would never end.
constexpr int MOST_ROUNDS = 8;

// It has a byte more than there are blocks: an empty file is one whose contents were lost.
std::uint64_t length_of_counter(const std::string& folder) {
    struct stat status {};
    const bool is_there = ::lstat((folder + '/' + COUNTER).c_str(), &status) == 0;
    return is_there && S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
}

int note_length(const std::string& folder, std::uint64_t length) {
    return put_file(folder, COUNTER, [length](int file) {
        return ::ftruncate(file, static_cast<off_t>(length)) == 0 ? 0 : errno;
    });
}

} // namespace

void count_blocks(const std::string& folder, std::uint64_t blocks) {
    if (length_of_counter(folder) == 0)
        return;
    const Descriptor counter{::open((folder + '/' + COUNTER).c_str(),
                                    O_WRONLY | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK)};
    if (counter.get() >= 0)
        write_bytes(counter.get(), std::string(blocks, '.'));
}

void forget_blocks(const std::string& folder) {
    ::unlink((folder + '/' + COUNTER).c_str());
}

bool keep_limit(const std::string& folder, std::uint64_t most_blocks) {
    const auto is_within = [&](std::uint64_t length) {
        return length > 0 && length - 1 <= most_blocks;
    };
    if (is_within(length_of_counter(folder)))
        return true;
    const Descriptor lock{::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return true;
    for (int round = 0; round < MOST_ROUNDS; ++round) {
        const std::uint64_t before = length_of_counter(folder);
        Contents contents(folder);
        if (contents.blocks() > most_blocks)
            contents.trim(most_blocks - most_blocks / 10);
        // What was stored meanwhile may have been found or not.
        const std::uint64_t after = length_of_counter(folder);
        const std::uint64_t missed = after - std::min(before, after);
        const std::uint64_t length = contents.blocks() + missed + 1;
        if (note_length(folder, length) != 0 || contents.blocks() > most_blocks)
            return false;
        if (is_within(length))
            return true;
    }
    return true;
}

} // namespace vexacm_tool
