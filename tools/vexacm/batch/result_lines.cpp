// SPDX-License-Identifier: MIT
#include "result_lines.hpp"

#include "descriptor.hpp"
#include "messages.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>

namespace vexacm_tool {

namespace {

class Line_reader {
public:
    explicit Line_reader(const std::string& file)
        : name_(file == "-" ? "standard input" : file),
          file_(file == "-" ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                            : ::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (file_.get() < 0)
            fail("cannot open ", std::strerror(errno));
    }

    /// The next line, until the next call; at the end one that lacks its newline.
    /// False when there is none.
    bool next(std::string_view& line) {
        text_.erase(0, std::exchange(size_, 0));
        for (std::size_t searched = 0;;) {
            const std::size_t end = text_.find('\n', searched);
            if (end != std::string::npos || (is_at_end_ && !text_.empty())) {
                is_whole_ = end != std::string::npos;
                size_ = is_whole_ ? end + 1 : text_.size();
                ++number_;
                line = std::string_view(text_).substr(0, size_);
                return true;
            }
            if (is_at_end_)
                return false;
            searched = text_.size();
            if (searched > LARGEST_MESSAGE)
                refuse();
            read_on();
        }
    }

    /// Whether it has its newline.
    bool is_whole() const { return is_whole_; }

    [[noreturn]] void refuse() const {
        throw Failure{Exit_status::input_output,
                      name_ + ", line " + std::to_string(number_) + ": no result of a batch"};
    }

private:
    [[noreturn]] void fail(const std::string& what, const std::string& reason) const {
        throw Failure{Exit_status::input_output, what + name_ + ": " + reason};
    }

    void read_on() {
        std::array<char, 65536> block;
        const ssize_t count = ::read(file_.get(), block.data(), block.size());
        if (count < 0)
            fail("cannot read ", std::strerror(errno));
        text_.append(block.data(), static_cast<std::size_t>(count));
        is_at_end_ = count == 0;
    }

    std::string name_;
    Descriptor file_;
    std::string text_;     ///< what was read, from the current line on
    std::size_t size_ = 0; ///< of that line
    std::size_t number_ = 0;
    bool is_whole_ = true;
    bool is_at_end_ = false;
};

// Numbers that contradict each other are not a run's.
bool is_sound(const Result& result) {
    const Shard shard = result.shard.value_or(Shard{});
    return result.job < result.jobs && shard.number >= 1 && shard.number <= shard.of &&
           shard.has(result.job);
}

// The beginning of a line, as far as it goes.
bool may_be_cut_off(std::string_view line) {
    constexpr std::string_view BEGINNING = R"({"job":)";
    return line.substr(0, BEGINNING.size()) == BEGINNING.substr(0, line.size());
}

} // namespace

void read_results(const std::string& file, const std::function<void(Result)>& visit) {
    Line_reader reader(file);
    for (std::string_view line; reader.next(line);) {
        std::optional<Result> result;
        try {
            result = result_of_line(line);
        } catch (const std::exception&) {
            if (!reader.is_whole() && may_be_cut_off(line))
                return;
        }
        if (!result || !is_sound(*result))
            reader.refuse();
        visit(std::move(*result));
    }
}

} // namespace vexacm_tool
