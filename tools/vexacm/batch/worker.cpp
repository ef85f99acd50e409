// SPDX-License-Identifier: MIT
#include "worker.hpp"

#include "memory.hpp"
#include "messages.hpp"
#include "source_file.hpp"

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <set>
#include <unistd.h>

namespace vexacm_tool {

namespace {

using Texts = std::vector<std::string>;

Texts texts(char** strings, std::uint32_t count) {
    Texts found;
    for (std::uint32_t i = 0; i < count; ++i)
        if (strings[i] != nullptr)
            found.emplace_back(strings[i]);
    return found;
}

// Cells keep their places: a null text is an empty one.
Texts cells(const vexaoc_string_list& list) {
    Texts found;
    for (std::uint32_t i = 0; i < list.num_strings; ++i)
        found.emplace_back(list.strings[i] != nullptr ? list.strings[i] : "");
    return found;
}

// What a plug-in left in buffers belongs to what it did up to here, and so does
// a stream that failed because too much was printed.
void finish_printing() {
    std::fflush(stdout);
    std::clearerr(stdout);
    std::clearerr(stderr);
    std::cout.clear();
    std::cerr.clear();
    std::clog.clear();
}

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
        bool is_last = false;
        const auto fail = [&](Outcome outcome, const std::string& detail) {
            result = {work_.jobs.head(job), outcome, detail};
            is_last = outcome != Outcome::unreadable;
        };
        try {
            probe(work_.jobs.compiler(job));
            compile(job, result);
        } catch (const Unreadable& error) {
            fail(Outcome::unreadable, error.what());
        } catch (const std::bad_alloc&) {
            fail(Outcome::out_of_memory, "an allocation failed");
        } catch (const std::exception& error) {
            fail(Outcome::crashed, std::string("exception: ") + error.what());
        } catch (...) {
            fail(Outcome::crashed, "exception");
        }
        finish_printing();
        result.printed = capture_.take();
        is_last = is_last || memory_is_short();
        send(Message::result,
             bytes_of_record(Result_head{job, static_cast<std::uint8_t>(result.outcome),
                                         static_cast<std::uint8_t>(is_last)}),
             to_line(result));
        return !is_last;
    }

    // What asking for extensions prints belongs to the compiler, not to a job
    // that would be the first to ask.
    void probe(const Compiler& compiler) {
        if (!probed_.insert(compiler.id).second)
            return;
        compiler.extensions();
        finish_printing();
        const std::string printed = capture_.take();
        if (!printed.empty())
            send(Message::probed, bytes_of_record(std::uint32_t{compiler.id}), printed);
    }

    void compile(std::size_t job, Result& result) {
        const auto outputs =
            vexacm::compile({source(job), result.stage, result.kernels, result.defines,
                             work_.outputs != nullptr, work_.prerotate},
                            work_.jobs.compiler(job).id);
        if (!outputs) {
            result.outcome = Outcome::refused;
            return;
        }
        const vexaoc_outputs& record = **outputs;
        result.errors = texts(record.strings_a, record.num_strings_a);
        result.warnings = texts(record.strings_b, record.num_strings_b);
        for (std::uint32_t i = 0; i < record.num_string_lists; ++i)
            result.tables.push_back(cells(record.string_lists[i]));
        result.binary_size = record.binary_size;
        if (!outputs->compiled())
            result.outcome = Outcome::errors;
        else if (work_.outputs != nullptr)
            write_binary(job, outputs->binary(), result);
    }

    void write_binary(std::size_t job, std::string_view binary, Result& result) {
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
