// SPDX-License-Identifier: MIT
#include "guard.hpp"

#include "../failure.hpp"
#include "capture.hpp"
#include "child.hpp"
#include "interrupt.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <vector>
#include <vexacm.hpp>

namespace vexacm_tool {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// How it went: what was wrong, if anything, and what was printed.
struct Trial {
    std::string trouble;
    std::string printed;
};

// Waits for a child; whether it ended in time.
bool ends(const Child& child, Clock::time_point deadline) {
    pollfd files[] = {{child.descriptor(), POLLIN, 0}, {Interrupt::descriptor(), POLLIN, 0}};
    while (!Interrupt::noted()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0)
            return false;
        if (::poll(files, 2, static_cast<int>(std::min<long>(left.count(), 60000))) > 0 &&
            files[0].revents != 0)
            return true;
    }
    return true;
}

Trial try_directory(const std::string& directory, Seconds timeout) {
    const Capture capture;
    // A plug-in that calls exit(0) has not got through.
    const Descriptor got_through{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    Child child([&] {
        capture.catch_standard_streams();
        try {
            const vexacm::Library library{directory};
        } catch (const std::exception&) {
            // That is told when it happens again.
        }
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t count = ::write(got_through.get(), &one, sizeof one);
    });
    const bool in_time =
        ends(child, Clock::now() + std::chrono::duration_cast<Clock::duration>(timeout));
    if (!in_time || Interrupt::noted())
        child.kill();
    const Child::Ending ending = child.wait();
    std::uint64_t count = 0;
    if (!in_time)
        return {"not open within " + in_seconds(timeout), capture.take()};
    if (Interrupt::noted() || ::read(got_through.get(), &count, sizeof count) > 0)
        return {};
    return {ending.detail, capture.take()};
}

/// A folder that is removed.
class Temporary_folder {
public:
    Temporary_folder() : path((fs::temp_directory_path() / "vexacm-XXXXXX").string()) {
        if (::mkdtemp(path.data()) == nullptr)
            throw std::system_error(errno, std::generic_category(), "cannot make a folder");
    }
    ~Temporary_folder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    Temporary_folder(const Temporary_folder&) = delete;
    Temporary_folder& operator=(const Temporary_folder&) = delete;

    std::string path;
};

bool is_plugin(const fs::path& file) {
    return file.filename().string().find(".so") != std::string::npos;
}

std::vector<fs::path> files_in(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(folder, missing))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

// Alone in a directory, but for the files beside it that are no plug-ins, which
// may be its own.
Trial try_alone(const fs::path& plugin, const std::string& api, Seconds timeout) {
    const Temporary_folder directory;
    for (const char* const folder : {"openglessl", "opencl"})
        fs::create_directory(fs::path(directory.path) / folder);
    for (const fs::path& file : files_in(plugin.parent_path()))
        if (file == plugin || !is_plugin(file))
            fs::create_symlink(fs::absolute(file),
                               fs::path(directory.path) / api / file.filename());
    return try_directory(directory.path, timeout);
}

std::string culprits(const std::string& directory, Seconds timeout) {
    std::string found;
    for (const std::string api : {"openglessl", "opencl"})
        for (const fs::path& file : files_in(fs::path(directory) / api)) {
            if (!is_plugin(file) || Interrupt::noted())
                continue;
            const std::string trouble = try_alone(file, api, timeout).trouble;
            if (!trouble.empty())
                found += (found.empty() ? "" : "; ") + api + '/' + file.filename().string() + ": " +
                         trouble;
        }
    return found;
}

} // namespace

void try_plugins(const std::string& directory, Seconds timeout) {
    const Trial all = try_directory(directory, timeout);
    if (all.trouble.empty())
        return;
    std::cerr << all.printed;
    const std::string single = culprits(directory, timeout);
    if (Interrupt::noted())
        return;
    const std::string reason = single.empty() ? "all of them together: " + all.trouble : single;
    throw Failure{Exit_status::refused,
                  "the plug-ins in '" + directory + "' cannot be used: " + reason};
}

} // namespace vexacm_tool
