// SPDX-License-Identifier: MIT
#include "folder.hpp"

#include "../batch/descriptor.hpp"
#include "../failure.hpp"
#include "../hexadecimal.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace vexacm_tool {

namespace {

namespace fs = std::filesystem;

constexpr const char* TAG_NAME = "CACHEDIR.TAG";
constexpr std::string_view TAG = "Signature: 8a477f597d28d172789f06886806bc55\n"
                                 "# This is a cache of vexacm(1), which may be removed.\n"
                                 "# What such a file is for: https://bford.info/cachedir/\n";
constexpr std::string_view UNFINISHED = "new-";
constexpr std::size_t UNFINISHED_DIGITS = 16;
constexpr std::size_t FOLDER_DIGITS = 2;
constexpr std::size_t KEY_DIGITS = 32;

[[noreturn]] void cannot_use(const std::string& named, const std::string& reason) {
    throw Failure{Exit_status::input_output, "cannot use the cache in '" + named + "': " + reason};
}

bool are_digits(std::string_view text) {
    return text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

// 0 when it is marked, or why that is not seen.
int find_mark(const std::string& folder) {
    const Descriptor tag{
        ::open((folder + '/' + TAG_NAME).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW)};
    if (tag.get() < 0)
        return errno;
    std::string text(TAG.size(), '\0');
    const ssize_t count = ::read(tag.get(), text.data(), text.size());
    if (count < 0)
        return errno;
    return text == TAG ? 0 : ENOENT;
}

// 0 when it has nothing in it but what others begin to mark it with.
int find_contents(const std::string& folder) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        if (!is_unfinished(entry->path().filename().string()))
            return ENOTEMPTY;
    return error.value();
}

// On the disk, before anything else is in the folder: it would be no cache any more.
int mark(const std::string& folder) {
    return put_file(folder, TAG_NAME, [](int file) {
        const int error = write_bytes(file, TAG);
        return error != 0 ? error : ::fsync(file) != 0 ? errno : 0;
    });
}

std::string unfinished_name() {
    char bytes[UNFINISHED_DIGITS / 2] = {};
    // Where there is no chance, a name that is taken is not taken again.
    [[maybe_unused]] const int drawn = ::getentropy(bytes, sizeof bytes);
    return std::string(UNFINISHED) + hexadecimal({bytes, sizeof bytes});
}

std::string absolute(const std::string& named) {
    std::error_code unknown;
    const fs::path path = fs::absolute(named, unknown);
    return unknown ? named : path.string();
}

} // namespace

Cache_folder open_cache_folder(const std::string& named) {
    Cache_folder folder{absolute(named)};
    std::error_code error;
    fs::create_directories(folder.path, error);
    if (error)
        cannot_use(named, error.message());
    int reason = find_mark(folder.path);
    if (reason == ENOENT) {
        reason = find_contents(folder.path);
        // Another process may have marked and begun to fill it meanwhile.
        if (reason == ENOTEMPTY)
            reason = find_mark(folder.path) == 0 ? 0 : ENOTEMPTY;
        else if (reason == 0)
            folder.is_unmarked = mark(folder.path);
    }
    if (reason == ENOTEMPTY)
        cannot_use(named, "it is not empty and no cache");
    if (reason != 0)
        cannot_use(named, std::strerror(reason));
    return folder;
}

std::string existing_cache_folder(const std::string& named) {
    const std::string folder = absolute(named);
    struct stat status {};
    const int reason = ::stat(folder.c_str(), &status) != 0 ? errno : find_mark(folder);
    if (reason == ENOENT && S_ISDIR(status.st_mode))
        cannot_use(named, "it is no cache");
    if (reason != 0)
        cannot_use(named, std::strerror(reason));
    return folder;
}

int write_bytes(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return errno;
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return 0;
}

int put_file(const std::string& folder, const std::string& name,
             const std::function<int(int file)>& fill) {
    const std::string unfinished = folder + '/' + unfinished_name();
    const std::string finished = folder + '/' + name;
    const Descriptor file{
        ::open(unfinished.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)};
    if (file.get() < 0)
        return errno;
    int error = fill(file.get());
    if (error == 0 && ::rename(unfinished.c_str(), finished.c_str()) != 0)
        error = errno;
    if (error != 0)
        ::unlink(unfinished.c_str());
    return error;
}

bool is_unfinished(const std::string& name) {
    return name.size() == UNFINISHED.size() + UNFINISHED_DIGITS &&
           name.compare(0, UNFINISHED.size(), UNFINISHED) == 0 &&
           are_digits(std::string_view(name).substr(UNFINISHED.size()));
}

std::string entry_name(const std::string& key) {
    return key.substr(0, FOLDER_DIGITS) + '/' + key.substr(FOLDER_DIGITS);
}

bool is_entry_folder(const std::string& name) {
    return name.size() == FOLDER_DIGITS && are_digits(name);
}

bool is_entry(const std::string& name) {
    return name.size() == KEY_DIGITS - FOLDER_DIGITS && are_digits(name);
}

} // namespace vexacm_tool
