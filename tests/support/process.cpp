// SPDX-License-Identifier: MIT
#include "process.hpp"

#include <stdexcept>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A file without a name: unlike a pipe it never fills up.
class Anonymous_file {
public:
    Anonymous_file() : descriptor(memfd_create("stream", MFD_CLOEXEC)) {
        if (descriptor < 0)
            throw std::runtime_error("cannot make an anonymous file");
    }
    ~Anonymous_file() { close(descriptor); }
    Anonymous_file(const Anonymous_file&) = delete;
    Anonymous_file& operator=(const Anonymous_file&) = delete;

    void fill(std::string_view text) {
        while (!text.empty()) {
            const ssize_t size = write(descriptor, text.data(), text.size());
            if (size < 0)
                throw std::runtime_error("cannot write an anonymous file");
            text.remove_prefix(static_cast<std::size_t>(size));
        }
        lseek(descriptor, 0, SEEK_SET);
    }

    std::string read_all() {
        lseek(descriptor, 0, SEEK_SET);
        std::string text;
        char part[4096];
        for (ssize_t size; (size = read(descriptor, part, sizeof part)) > 0;)
            text.append(part, static_cast<std::size_t>(size));
        return text;
    }

    const int descriptor;
};

} // namespace

Process_result run(const std::vector<std::string>& arguments, std::string_view input,
                   std::string_view setup) {
    Anonymous_file in;
    Anonymous_file out;
    Anonymous_file err;
    in.fill(input);

    const std::string script = std::string(setup) + "\nexec \"$@\"";
    std::vector<const char*> words = {"/bin/sh", "-c", script.c_str(), "sh"};
    for (const std::string& argument : arguments)
        words.push_back(argument.c_str());
    words.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0) {
        dup2(in.descriptor, 0);
        dup2(out.descriptor, 1);
        dup2(err.descriptor, 2);
        execv(words[0], const_cast<char* const*>(words.data()));
        _exit(127);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
        throw std::runtime_error("cannot run " + arguments.at(0));
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), out.read_all(),
            err.read_all()};
}
