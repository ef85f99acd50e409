// SPDX-License-Identifier: MIT
#include "outputs.hpp"

#include "descriptor.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>
#include <unordered_map>

namespace vexacm_tool {

namespace {

constexpr std::string_view ENDING = ".bin";

void append_code(std::string& text, char byte) {
    constexpr char DIGITS[] = "0123456789ABCDEF";
    text += '%';
    text += DIGITS[static_cast<unsigned char>(byte) >> 4];
    text += DIGITS[static_cast<unsigned char>(byte) & 15];
}

// Bytes beyond ASCII are coded too: a result's line tells the file as a text.
bool is_plain(char byte) {
    return byte >= ' ' && byte < 0x7f && byte != '%' && byte != '~' && byte != '/';
}

// A name without "/", which is neither empty nor "." nor "..".
std::string coded(std::string_view name) {
    std::string code;
    const bool dots = name == "." || name == "..";
    for (const char byte : name)
        if (is_plain(byte) && !dots)
            code += byte;
        else
            append_code(code, byte);
    return name.empty() ? "%" : code;
}

// Folders never have the ending of the files beside them.
std::string coded_folder(std::string_view name) {
    if (name.size() < ENDING.size() || name.substr(name.size() - ENDING.size()) != ENDING)
        return coded(name);
    return coded(name.substr(0, name.size() - ENDING.size())) + "%2Ebin";
}

std::string again(std::uint32_t before) {
    return before > 0 ? '~' + std::to_string(before + 1) : std::string();
}

[[noreturn]] void fail(const std::string& file, int error) {
    throw Failure{Exit_status::input_output, "cannot write " + file + ": " + std::strerror(error)};
}

} // namespace

std::string downward_path(std::string_view file) {
    std::string path = file.substr(0, 1) == "/" ? "%2F/" : "";
    std::string_view rest = file;
    for (;;) {
        const std::size_t slash = rest.find('/');
        const std::string_view name = rest.substr(0, slash);
        if (slash == std::string_view::npos)
            return path + coded(name);
        if (!name.empty() && name != ".")
            path += coded_folder(name) + '/';
        rest.remove_prefix(slash + 1);
    }
}

Output_names::Output_names(const std::string& directory, const Jobs& jobs)
    : directory_(directory), jobs_(jobs), run_(::getpid()) {
    std::unordered_map<std::string, std::uint32_t> sources;
    for (const Source& source : jobs.sources())
        same_name_.push_back(sources[downward_path(source.file)]++);

    // All of the catalogue are counted: filters do not change a compiler's folder.
    std::unordered_map<std::string, std::uint32_t> folders;
    for (const unsigned int id : Compiler_ids()) {
        const Compiler compiler(id);
        const std::string folder =
            coded(compiler.driver) + '/' + coded(compiler.core) + '/' + coded(compiler.revision);
        compilers_[id] = folder + again(folders[folder + '/' + compiler.api]++);
    }
}

std::string Output_names::file(std::size_t job) const {
    const std::size_t source = jobs_.source_number(job);
    return directory_ + '/' + compilers_.at(jobs_.compiler(job).id) + '/' +
           downward_path(jobs_.sources()[source].file) + again(same_name_[source]) +
           std::string(ENDING);
}

std::string Output_names::unfinished_file(std::size_t job) const {
    return std::filesystem::path(file(job))
        .replace_filename(".vexacm-" + std::to_string(run_) + '-' + std::to_string(job))
        .string();
}

void write_output(const std::string& file, const std::string& unfinished, std::string_view bytes) {
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path(), error);
    if (error)
        fail(file, error.value());
    Descriptor out{
        ::open(unfinished.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0666)};
    if (out.get() < 0)
        fail(file, errno);
    while (!bytes.empty()) {
        const ssize_t count = ::write(out.get(), bytes.data(), bytes.size());
        if (count < 0)
            break;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    if (!bytes.empty() || ::rename(unfinished.c_str(), file.c_str()) != 0) {
        const int reason = errno;
        ::unlink(unfinished.c_str());
        fail(file, reason);
    }
}

} // namespace vexacm_tool
