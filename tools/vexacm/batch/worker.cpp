// SPDX-License-Identifier: MIT
#include "worker.hpp"

#include "../compiled.hpp"
#include "memory.hpp"
#include "messages.hpp"
#include "source_file.hpp"

#include <cerrno>
#include <optional>
#include <set>
#include <unistd.h>

namespace vexacm_tool {

namespace {

[[noreturn]] void hang() {
    for (;;)
        ::pause();
}

class Worker_process {
public:
    Worker_process(const Work& work, const Capture& capture, int connection)
        : work_(work), capture_(capture), connection_(connection) {}

    void run_all() {
        std::uint64_t jobs[16];
        for (;;) {
            const ssize_t size = ::read(connection_, jobs, sizeof jobs);
            if (size < 0 && errno == EINTR)
                continue;
            if (size <= 0)
                return;
            const std::size_t count = static_cast<std::size_t>(size) / sizeof *jobs;
            for (std::size_t i = 0; i < count; ++i)
                if (!run(jobs[i]))
                    return;
        }
    }

private:
    // Whether this process can go on.
    bool run(std::size_t job) {
        forget_failed_allocations();
        Result result(work_.jobs.head(job), Outcome::compiled);
        Result_head head{job};
        const auto fail = [&](Outcome outcome, const std::string& detail) {
            std::string printed = std::move(result.printed);
            result = {work_.jobs.head(job), outcome, detail};
            result.printed = std::move(printed);
            head.is_last = outcome != Outcome::unreadable;
        };
        try {
            fill_in(job, result, head);
        } catch (const Unreadable& error) {
            fail(Outcome::unreadable, error.what());
        } catch (const std::bad_alloc&) {
            fail(Outcome::out_of_memory, "an allocation failed");
        } catch (const std::exception& error) {
            fail(Outcome::crashed, std::string("exception: ") + error.what());
        } catch (...) {
            fail(Outcome::crashed, "exception");
        }
        result.printed += capture_.finish_and_take();
        head.outcome = static_cast<std::uint8_t>(result.outcome);
        head.is_last = head.is_last || memory_is_short();
        send(Message::result, bytes_of_record(head), to_line(result));
        return !head.is_last;
    }

    // What is in the cache is not asked of a plug-in, its extensions included.
    void fill_in(std::size_t job, Result& result, Result_head& head) {
        const std::string key = cache_key(job);
        if (std::optional<Compiled> found = key.empty() ? std::nullopt : work_.cache->find(key)) {
            head.is_cached = true;
            result.printed = std::move(found->printed);
            return fill_in(job, result, std::move(*found));
        }
        const Compiler& compiler = work_.jobs.compiler(job);
        probe(compiler);
        std::optional<Compiled> compiled = compile_with(compiler.id, request(job));
        result.printed = capture_.finish_and_take();
        if (!compiled) {
            result.outcome = Outcome::refused;
            return;
        }
        if (!key.empty()) {
            compiled->printed = result.printed;
            const Cache::Stored stored = work_.cache->store(key, *compiled);
            head.is_stored = stored.is_done;
            head.store_error = stored.error;
        }
        fill_in(job, result, std::move(*compiled));
    }

    void fill_in(std::size_t job, Result& result, Compiled compiled) const {
        result.errors = std::move(compiled.errors);
        result.warnings = std::move(compiled.warnings);
        result.tables = std::move(compiled.tables);
        result.binary_size = compiled.binary_size;
        if (compiled.has_errors)
            result.outcome = Outcome::errors;
        else if (work_.outputs != nullptr)
            write_binary(job, compiled.binary, result);
    }

    vexacm::Request request(std::size_t job) {
        const Source& from = work_.jobs.source(job);
        return {source(job),
                from.stage,
                from.kernels,
                work_.jobs.defines(job),
                work_.outputs != nullptr,
                work_.prerotate};
    }

    // Empty without a cache. That a source cannot be read is told as without one.
    std::string cache_key(std::size_t job) {
        try {
            return work_.cache != nullptr ? work_.cache->key(request(job), work_.jobs.compiler(job))
                                          : std::string();
        } catch (const Unreadable&) {
            return {};
        }
    }

    // What asking for extensions prints belongs to the compiler, not to a job
    // that would be the first to ask.
    void probe(const Compiler& compiler) {
        if (!probed_.insert(compiler.id).second)
            return;
        compiler.extensions();
        const std::string printed = capture_.finish_and_take();
        if (!printed.empty())
            send(Message::probed, bytes_of_record(std::uint32_t{compiler.id}), printed);
    }

    void write_binary(std::size_t job, std::string_view binary, Result& result) const {
        if (binary.empty()) {
            result.outcome = Outcome::no_binary;
            return;
        }
        std::string file = work_.outputs->file(job);
        try {
            write_output(file, work_.outputs->unfinished_file(job), binary);
            result.output = std::move(file);
        } catch (const Failure& failure) {
            result.outcome = Outcome::unwritable;
            result.detail = failure.what();
        }
    }

    // One source is compiled many times in a row.
    const std::string& source(std::size_t job) {
        const std::size_t number = work_.jobs.source_number(job);
        if (number != source_number_) {
            source_number_ = static_cast<std::size_t>(-1);
            source_ = read_source_file(work_.jobs.sources()[number].file);
            source_number_ = number;
        }
        return source_;
    }

    void send(Message message, std::string_view head, std::string_view text) const {
        const Message_head all{static_cast<std::uint32_t>(head.size() + text.size()), message};
        std::string bytes(bytes_of_record(all));
        bytes.append(head).append(text);
        for (std::string_view rest = bytes; !rest.empty();) {
            const ssize_t count = ::write(connection_, rest.data(), rest.size());
            // The parent finds out that it is not told anything any more.
            if (count < 0 && errno != EINTR)
                hang();
            rest.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
        }
    }

    const Work& work_;
    const Capture& capture_;
    int connection_;
    std::set<unsigned int> probed_;
    std::size_t source_number_ = static_cast<std::size_t>(-1);
    std::string source_;
};

} // namespace

void work(const Work& work, const Capture& capture, int connection) {
    limit_memory(work.memory_limit, connection);
    try {
        Worker_process(work, capture, connection).run_all();
    } catch (...) {
        // Not even a result could be told: what is lost is this job.
        std::abort();
    }
    // Plug-ins are not closed: a worker owes nobody that risk.
    ::_exit(0);
}

} // namespace vexacm_tool
