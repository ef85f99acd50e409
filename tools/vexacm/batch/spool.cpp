// SPDX-License-Identifier: MIT
#include "spool.hpp"

#include "../failure.hpp"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>

namespace vexacm_tool {

namespace {

constexpr std::size_t BLOCK = 65536;

[[noreturn]] void fail(const char* what) {
    const int error = errno;
    std::error_code unknown;
    const std::string folder = std::filesystem::temp_directory_path(unknown).string();
    throw Failure{Exit_status::input_output, "cannot " + std::string(what) + " the results in '" +
                                                 folder + "': " + std::strerror(error)};
}

Descriptor unnamed_file() {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    std::string name = (folder / "vexacm-XXXXXX").string();
    Descriptor file{::mkostemp(name.data(), O_CLOEXEC)};
    if (file.get() < 0)
        fail("keep");
    ::unlink(name.c_str());
    return file;
}

} // namespace

Spool::Spool() : file_(unnamed_file()) {}

void Spool::put(std::size_t job, std::string_view line) {
    places_[job] = {written_ + unwritten_.size(), line.size()};
    unwritten_ += line;
    if (unwritten_.size() >= BLOCK)
        flush();
}

void Spool::flush() {
    std::string_view rest = unwritten_;
    while (!rest.empty()) {
        const ssize_t count =
            ::pwrite(file_.get(), rest.data(), rest.size(), static_cast<off_t>(written_));
        if (count < 0)
            fail("keep");
        rest.remove_prefix(static_cast<std::size_t>(count));
        written_ += static_cast<std::uint64_t>(count);
    }
    unwritten_.clear();
    // One long line is no reason to hold on to its memory.
    if (unwritten_.capacity() > 4 * BLOCK)
        unwritten_.shrink_to_fit();
}

std::string Spool::line(std::size_t job) const {
    const Place place = places_.at(job);
    if (place.start >= written_)
        return unwritten_.substr(place.start - written_, place.size);
    std::string text(place.size, '\0');
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = ::pread(file_.get(), text.data() + done, text.size() - done,
                                      static_cast<off_t>(place.start + done));
        if (count <= 0)
            fail("read");
        done += static_cast<std::size_t>(count);
    }
    return text;
}

void Spool::for_each(const std::function<void(const Result&)>& visit) const {
    for_each_line([&](const std::string& line) { visit(result_of_line(line)); });
}

void Spool::for_each_line(const std::function<void(const std::string&)>& visit) const {
    places_.for_each([&](std::size_t job, const Place& place) {
        if (place.size > 0)
            visit(line(job));
    });
}

} // namespace vexacm_tool
