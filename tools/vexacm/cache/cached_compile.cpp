// SPDX-License-Identifier: MIT
#include "cached_compile.hpp"

#include "../batch/capture.hpp"
#include "../batch/descriptor.hpp"

#include <cerrno>
#include <fcntl.h>
#include <iostream>
#include <system_error>

namespace vexacm_tool {

namespace {

/// While it lives, what is printed is caught. It goes to standard error afterwards,
/// if need be before an exception.
class Caught {
public:
    explicit Caught(std::string& printed) : printed_(printed) {
        if (output_.get() < 0 || error_.get() < 0)
            throw std::system_error(errno, std::generic_category(), "cannot catch what is printed");
        capture_.catch_standard_streams();
    }
    ~Caught() {
        printed_ = capture_.finish_and_take();
        ::dup2(output_.get(), STDOUT_FILENO);
        ::dup2(error_.get(), STDERR_FILENO);
        std::cerr << printed_;
    }
    Caught(const Caught&) = delete;
    Caught& operator=(const Caught&) = delete;

private:
    static Descriptor copy(int stream) {
        return Descriptor{::fcntl(stream, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)};
    }

    std::string& printed_;
    Descriptor output_ = copy(STDOUT_FILENO);
    Descriptor error_ = copy(STDERR_FILENO);
    Capture capture_;
};

std::optional<Compiled> compile_and_catch(const vexacm::Request& request, unsigned int compiler_id,
                                          std::string& printed) {
    const Caught caught(printed);
    return compile_with(compiler_id, request);
}

} // namespace

std::optional<Compiled> compile_with_cache(const vexacm::Request& request, const Compiler& compiler,
                                           Cache& cache) {
    cache.read_plugin(compiler);
    const std::string key = cache.key(request, compiler);
    if (std::optional<Compiled> found = cache.find(key)) {
        std::cerr << found->printed;
        return found;
    }
    std::string printed;
    std::optional<Compiled> compiled = compile_and_catch(request, compiler.id, printed);
    if (!compiled)
        return compiled;
    compiled->printed = std::move(printed);
    const Cache::Stored stored = cache.store(key, *compiled);
    if (stored.error != 0)
        cache.tell_error(stored.error);
    if (stored.is_done)
        cache.keep_limit();
    return compiled;
}

} // namespace vexacm_tool
