// SPDX-License-Identifier: MIT
#include "guard.hpp"

#include "../failure.hpp"
#include "capture.hpp"
#include "child.hpp"
#include "interrupt.hpp"
#include "memory.hpp"
#include "messages.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <poll.h>
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

Trial try_directory(const std::string& directory, const Trial_limits& limits) {
    const Capture capture;
    int ends_of_pipe[2];
    if (::pipe2(ends_of_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category(), "cannot try the plug-ins");
    const Descriptor heard{ends_of_pipe[0]};
    const Descriptor said{ends_of_pipe[1]};
    Child child([&] {
        capture.catch_standard_streams();
        limit_memory(limits.memory, said.get(), Memory::written);
        try {
            const vexacm::Library library{directory};
        } catch (const std::exception&) {
            // That is told when it happens again.
        }
        // A plug-in that calls exit(0) has not got through.
        const bool too_much = limits.memory > 0 && memory_is_used_up();
        const Message_head head{0, too_much ? Message::memory_out : Message::opened};
        [[maybe_unused]] const ssize_t count = ::write(said.get(), &head, sizeof head);
    });
    const bool in_time =
        ends(child, Clock::now() + std::chrono::duration_cast<Clock::duration>(limits.timeout));
    if (!in_time || Interrupt::noted())
        child.kill();
    const Child::Ending ending = child.wait();
    if (!in_time)
        return {"not open within " + in_seconds(limits.timeout), capture.take()};
    Message_head last{};
    const bool spoke = ::read(heard.get(), &last, sizeof last) == sizeof last;
    if (Interrupt::noted() || (spoke && last.message == Message::opened))
        return {};
    if (spoke && limits.memory > 0)
        return {"more than " + std::to_string(limits.memory) + " MB of memory", capture.take()};
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
Trial try_alone(const fs::path& plugin, const std::string& api, const Trial_limits& limits) {
    const Temporary_folder directory;
    for (const char* const folder : {"openglessl", "opencl"})
        fs::create_directory(fs::path(directory.path) / folder);
    for (const fs::path& file : files_in(plugin.parent_path()))
        if (file == plugin || !is_plugin(file))
            fs::create_symlink(fs::absolute(file),
                               fs::path(directory.path) / api / file.filename());
    return try_directory(directory.path, limits);
}

std::string culprits(const std::string& directory, const Trial_limits& limits) {
    std::string found;
    for (const std::string api : {"openglessl", "opencl"})
        for (const fs::path& file : files_in(fs::path(directory) / api)) {
            if (!is_plugin(file) || Interrupt::noted())
                continue;
            const std::string trouble = try_alone(file, api, limits).trouble;
            if (!trouble.empty())
                found += (found.empty() ? "" : "; ") + api + '/' + file.filename().string() + ": " +
                         trouble;
        }
    return found;
}

} // namespace

void try_plugins(const std::string& directory, const Trial_limits& limits) {
    const Trial all = try_directory(directory, limits);
    if (all.trouble.empty())
        return;
    std::cerr << all.printed;
    const std::string single = culprits(directory, limits);
    if (Interrupt::noted())
        return;
    const std::string reason = single.empty() ? "all of them together: " + all.trouble : single;
    throw Failure{Exit_status::refused,
                  "the plug-ins in '" + directory + "' cannot be used: " + reason};
}

} // namespace vexacm_tool
