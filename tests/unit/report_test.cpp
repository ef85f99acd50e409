// SPDX-License-Identifier: MIT
#include "report.hpp"

#include <iomanip>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "captured_stderr.hpp"
#include "grouping_locale.hpp"

namespace {

using VexaCM::report_line;

// Writes down every operation on it; may stand in for that of std::cerr.
class Recorder : public std::streambuf {
public:
    std::vector<std::string> operations;

private:
    std::streamsize xsputn(const char* text, std::streamsize size) override {
        operations.emplace_back(text, static_cast<std::size_t>(size));
        return size;
    }
    int sync() override {
        operations.emplace_back("flush");
        return 0;
    }
};

class Replaced_buffer {
public:
    explicit Replaced_buffer(std::streambuf* buffer) : previous(std::cerr.rdbuf(buffer)) {}
    ~Replaced_buffer() { std::cerr.rdbuf(previous); }
    Replaced_buffer(const Replaced_buffer&) = delete;
    Replaced_buffer& operator=(const Replaced_buffer&) = delete;

private:
    std::streambuf* previous;
};

TEST(Report, PartsThenOneLine) {
    EXPECT_EQ(stderr_of([] { report_line("a", std::string("b"), std::string_view("c")); }),
              "abc\n");
    EXPECT_EQ(stderr_of([] { report_line(); }), "\n");
    EXPECT_EQ(stderr_of([] { report_line("", ""); }), "\n");
    EXPECT_EQ(stderr_of([] { report_line("%s%n\\"); }), "%s%n\\\n");
}

TEST(Report, AnyLengthThenAllOfIt) {
    for (const std::size_t size : {0U, 1U, 509U, 510U, 511U, 512U, 513U, 1024U, 1000000U}) {
        const std::string text(size, 'x');
        EXPECT_TRUE(stderr_of([&] { report_line(text); }) == text + "\n") << size;
        EXPECT_TRUE(stderr_of([&] { report_line("a", text, "b"); }) == "a" + text + "b\n") << size;
    }
}

TEST(Report, LineThenWrittenInOnePieceAndFlushed) {
    const std::string long_text(2000, 'x');
    Recorder recorder;
    {
        const Replaced_buffer replaced(&recorder);
        report_line("a", "b");
        report_line(long_text, "c");
    }
    EXPECT_EQ(recorder.operations,
              (std::vector<std::string>{"ab\n", "flush", long_text + "c\n", "flush"}));
}

TEST(Report, HostChangedTheStreamThenTheSame) {
    const Grouping_locale grouping;
    std::ios state(nullptr);
    state.copyfmt(std::cerr);
    std::cerr.imbue(std::locale());
    std::cerr << std::hex << std::setfill('*') << std::setw(20);
    std::cerr.setstate(std::ios::failbit | std::ios::badbit);
    const std::string err = stderr_of([] { report_line("a ", std::to_string(1000)); });
    std::cerr.clear();
    EXPECT_EQ(std::cerr.width(), 20); // nor is anything used up
    std::cerr.copyfmt(state);
    EXPECT_EQ(err, "a 1000\n");
}

TEST(Report, HostsBufferThrowsThenTheLineIsLost) {
    class Throwing : public std::streambuf {
        std::streamsize xsputn(const char*, std::streamsize) override {
            throw std::runtime_error("full");
        }
        int sync() override { throw std::runtime_error("full"); }
    } throwing;
    const std::string err = stderr_of([&] {
        const Replaced_buffer replaced(&throwing);
        std::cerr.exceptions(std::ios::badbit);
        EXPECT_NO_THROW(report_line("a"));
        std::cerr.exceptions(std::ios::goodbit);
        EXPECT_TRUE(std::cerr.good()); // and the host's stream is as it was
    });
    EXPECT_EQ(err, "");
}

TEST(Report, StreamHasNoBufferThenNothingHappens) {
    const std::string err = stderr_of([] {
        const Replaced_buffer replaced(nullptr);
        report_line("a");
    });
    std::cerr.clear();
    EXPECT_EQ(err, "");
}

} // namespace
