// SPDX-License-Identifier: MIT
#include "streams.hpp"

#include "failure.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <streambuf>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace vexacm_tool {

namespace {

namespace fs = std::filesystem;

// Where results go.
int standard_output = STDOUT_FILENO;

[[noreturn]] void fail(const char* action, const std::string& file) {
    const int error = errno;
    throw Failure{Exit_status::input_output, action + file + ": " + std::strerror(error)};
}

/// An open file that is closed, and removed if it has a name to be removed by.
class Open_file {
public:
    explicit Open_file(int descriptor) : descriptor_(descriptor) {}
    Open_file(int descriptor, std::string unfinished)
        : descriptor_(descriptor), unfinished_(std::move(unfinished)) {}
    ~Open_file() {
        if (descriptor_ >= 0)
            ::close(descriptor_);
        if (!unfinished_.empty())
            ::unlink(unfinished_.c_str());
    }
    Open_file(const Open_file&) = delete;
    Open_file& operator=(const Open_file&) = delete;

    int descriptor() const { return descriptor_; }
    bool close() { return ::close(std::exchange(descriptor_, -1)) == 0; }
    bool rename(const std::string& target) {
        if (::rename(unfinished_.c_str(), target.c_str()) != 0)
            return false;
        unfinished_.clear();
        return true;
    }

private:
    int descriptor_;
    std::string unfinished_;
};

void write_all(int descriptor, std::string_view bytes, const std::string& file) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0)
            fail("cannot write ", file);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// A stream's way into an open file. Of a write that fails it keeps the reason.
class Descriptor_buffer : public std::streambuf {
public:
    explicit Descriptor_buffer(int descriptor) : descriptor_(descriptor) {
        setp(block_.data(), block_.data() + block_.size());
    }
    int error() const { return error_; }

protected:
    int sync() override {
        std::string_view rest(pbase(), static_cast<std::size_t>(pptr() - pbase()));
        while (!rest.empty() && error_ == 0) {
            const ssize_t written = ::write(descriptor_, rest.data(), rest.size());
            if (written >= 0)
                rest.remove_prefix(static_cast<std::size_t>(written));
            else
                error_ = errno;
        }
        setp(block_.data(), block_.data() + block_.size());
        return error_ == 0 ? 0 : -1;
    }
    int overflow(int character) override {
        if (sync() != 0)
            return traits_type::eof();
        if (character != traits_type::eof())
            sputc(static_cast<char>(character));
        return traits_type::not_eof(character);
    }

private:
    int descriptor_;
    int error_ = 0;
    std::array<char, 65536> block_{};
};

void write_stream(int descriptor, const Write_text& write, const std::string& file) {
    Descriptor_buffer buffer(descriptor);
    std::ostream out(&buffer);
    write(out);
    out.flush();
    if (!out) {
        errno = buffer.error();
        fail("cannot write ", file);
    }
}

enum class Nul_bytes { refused, accepted };

std::string read_all(int descriptor, const std::string& file, Nul_bytes nul_bytes) {
    std::string text;
    std::array<char, 65536> block;
    for (;;) {
        const ssize_t count = ::read(descriptor, block.data(), block.size());
        if (count < 0)
            fail("cannot read ", file);
        if (count == 0)
            return text;
        text.append(block.data(), static_cast<std::size_t>(count));
        // The library takes NUL-terminated text: the rest would be left out unnoticed.
        if (nul_bytes == Nul_bytes::refused &&
            std::memchr(block.data(), '\0', static_cast<std::size_t>(count)) != nullptr)
            throw Failure{Exit_status::input_output,
                          "cannot compile " + file + ": it has NUL bytes"};
    }
}

std::string read_file(const std::string& file, Nul_bytes nul_bytes) {
    if (file == "-")
        return read_all(STDIN_FILENO, "standard input", nul_bytes);
    Open_file in{::open(file.c_str(), O_RDONLY | O_CLOEXEC)};
    if (in.descriptor() < 0)
        fail("cannot open ", file);
    return read_all(in.descriptor(), file, nul_bytes);
}

// The umask can only be read by setting it.
mode_t new_file_mode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

using Write_file = std::function<void(int descriptor)>;

void write_in_place(const std::string& file, const Write_file& write) {
    Open_file out{::open(file.c_str(), O_WRONLY | O_CLOEXEC)};
    if (out.descriptor() < 0)
        fail("cannot open ", file);
    write(out.descriptor());
    if (!out.close())
        fail("cannot write ", file);
}

void replace_file(const std::string& file, mode_t mode, const Write_file& write) {
    std::error_code unresolved;
    const fs::path resolved = fs::weakly_canonical(file, unresolved);
    const std::string target = unresolved ? file : resolved.string();
    std::string name = fs::path(target).replace_filename(".vexacm-XXXXXX").string();
    const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (descriptor < 0)
        fail("cannot write ", file);
    Open_file out{descriptor, name};
    write(out.descriptor());
    if (::fchmod(out.descriptor(), mode) != 0 || !out.close() || !out.rename(target))
        fail("cannot write ", file);
}

void write_file(const std::string& file, const Write_file& write) {
    if (file.empty()) { // to some it is the working directory
        errno = ENOENT;
        fail("cannot write ", file);
    }
    std::error_code unknown;
    const fs::file_status status = fs::status(file, unknown);
    // Devices and pipes are written to: putting a file in their place would end them.
    if (fs::exists(status) && !fs::is_regular_file(status))
        return write_in_place(file, write);
    const bool replaces = fs::is_regular_file(status);
    const mode_t mode =
        replaces ? static_cast<mode_t>(status.permissions()) & 0777 : new_file_mode();
    replace_file(file, mode, write);
}

} // namespace

void hold_standard_streams() {
    // Opened the wrong way round, so that using them still fails.
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(stream, F_GETFD) < 0)
            ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

void tell(const std::string& text) {
    std::cerr << "vexacm: " + text + '\n';
}

void keep_plugins_off_standard_output() {
    const int duplicate = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (duplicate < 0 || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
        fail("cannot open ", "standard output");
    standard_output = duplicate;
}

std::string read_source(const std::string& file) {
    return read_file(file, Nul_bytes::refused);
}

std::string read_any_bytes(const std::string& file) {
    return read_file(file, Nul_bytes::accepted);
}

void write_standard_output(std::string_view text) {
    write_all(standard_output, text, "standard output");
}

void write_standard_output(const Write_text& write) {
    write_stream(standard_output, write, "standard output");
}

void write_binary(const std::string& file, std::string_view bytes) {
    if (file == "-")
        return write_standard_output(bytes);
    write_file(file, [&](int descriptor) { write_all(descriptor, bytes, file); });
}

void write_file_atomically(const std::string& file, const Write_text& write) {
    write_file(file, [&](int descriptor) {
        write_stream(descriptor, write, file);
        // What has no disk behind it cannot be brought there.
        if (::fsync(descriptor) != 0 && errno != EINVAL && errno != EROFS)
            fail("cannot write ", file);
    });
}

} // namespace vexacm_tool
