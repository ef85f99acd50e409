// SPDX-License-Identifier: MIT
#include <cstdio>
#include <iostream>
#include <stdexcept>

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include "diagnostics.hpp"

namespace {

// How diagnostics leave the library.
using HostStream = Diagnostics_test;

std::vector<std::string> lines(std::string_view text) {
    std::vector<std::string> found;
    while (!text.empty()) {
        found.emplace_back(text.substr(0, text.find('\n') + 1));
        text.remove_prefix(found.back().size());
    }
    return found;
}

// Everything that `action` writes to standard error, a string for each write:
// in a socket of packets they stay apart.
template <class Action>
std::vector<std::string> writes_of(Action action) {
    int sockets[2];
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, sockets), 0);
    const int saved = dup(2);
    dup2(sockets[1], 2);
    action();
    dup2(saved, 2);
    close(saved);
    close(sockets[1]);
    std::vector<std::string> writes;
    std::string packet(1 << 18, '\0');
    for (ssize_t size; (size = recv(sockets[0], packet.data(), packet.size(), 0)) > 0;)
        writes.emplace_back(packet, 0, static_cast<std::size_t>(size));
    close(sockets[0]);
    return writes;
}

// Notes what is done to it.
class Noting_buffer : public std::streambuf {
public:
    std::vector<std::string> notes;

private:
    std::streamsize xsputn(const char* text, std::streamsize size) override {
        notes.emplace_back(text, static_cast<std::size_t>(size));
        return size;
    }
    int_type overflow(int_type character) override {
        notes.emplace_back(1, static_cast<char>(character));
        return character;
    }
    int sync() override {
        notes.emplace_back("(sync)");
        return 0;
    }
};

// A host's own buffer, with a fault of its own.
class Throwing_buffer : public std::streambuf {
public:
    explicit Throwing_buffer(bool when_flushed_) : when_flushed(when_flushed_) {}

    int thrown = 0;

private:
    std::streamsize xsputn(const char*, std::streamsize size) override {
        return when_flushed ? size : fail();
    }
    int_type overflow(int_type) override { return fail(); }
    int sync() override { return fail(); }

    int fail() {
        ++thrown;
        throw std::runtime_error("from the buffer");
    }

    bool when_flushed;
};

TEST_F(HostStream, EveryDiagnosticIsOneWrite) {
    EXPECT_EQ(writes_of([&] { make_diagnostics(); }), lines(expected_diagnostics()));
}

TEST_F(HostStream, LinesOfEveryLengthAreOneWrite) {
    const One_plugin plugin(gles_plugin());
    std::vector<std::string> expected;
    std::vector<std::string> types;
    // Around the powers of two at which buffers like to end.
    for (const std::size_t power : {256u, 512u, 1024u, 4096u, 8192u, 65536u})
        for (std::size_t size = power - 60; size < power + 4; ++size)
            types.emplace_back(size, 'x');
    for (const std::string& type : types) {
        const auto writes = writes_of([&] {
            Outputs outputs;
            outputs.compile(Request(type.c_str()));
        });
        EXPECT_EQ(writes, (std::vector<std::string>{
                              "Compiler Manager Error: Unknown shader type: " + type + ".\n"}));
    }
}

TEST_F(HostStream, ALineWithNewlinesInItIsOneWrite) {
    const One_plugin plugin(gles_plugin());
    EXPECT_EQ(writes_of([&] {
                  Outputs outputs;
                  outputs.compile(Request("\none\n\ntwo\n"));
              }),
              (std::vector<std::string>{
                  "Compiler Manager Error: Unknown shader type: \none\n\ntwo\n.\n"}));
}

TEST_F(HostStream, DiagnosticsGoThroughTheBufferOfTheStreamAndAreFlushed) {
    Noting_buffer buffer;
    std::streambuf* const former = std::cerr.rdbuf(&buffer);
    const std::string written = stderr_of([&] { make_diagnostics(); });
    std::cerr.rdbuf(former);
    EXPECT_EQ(written, "");
    std::vector<std::string> expected;
    for (const std::string& line : lines(expected_diagnostics()))
        expected.insert(expected.end(), {line, "(sync)"});
    EXPECT_EQ(buffer.notes, expected);
}

TEST_F(HostStream, ABufferThatThrowsEndsNothing) {
    std::streambuf* const former = std::cerr.rdbuf();
    for (const bool when_flushed : {false, true}) {
        Throwing_buffer buffer(when_flushed);
        std::cerr.rdbuf(&buffer);
        // Both plug-ins are refused and closed, and the third one used.
        EXPECT_NO_THROW(make_diagnostics());
        EXPECT_TRUE(vexacm_initialize_libraries(plugins.root().c_str()));
        EXPECT_EQ(find_compilers().size(), 1u);
        plugins.take_log();
        {
            Outputs outputs;
            EXPECT_FALSE(outputs.compile(Request()));
            EXPECT_TRUE(outputs.is_zeroed());
        }
        vexacm_release_libraries();
        std::cerr.rdbuf(former);
        const int num_lines = static_cast<int>(lines(expected_diagnostics()).size());
        // The lines of the second initialisation, of the compile and no others.
        EXPECT_EQ(buffer.thrown, num_lines + 7 + 1);
        EXPECT_EQ(plugins.take_log(),
                  "openglessl/libother.so " +
                      compile_call({"shader_type", "fragment", "compiler_type", "openglessl"},
                                   "void main() {}") +
                      "\nopenglessl/libother.so release_outputs\n"
                      "openglessl/libother.so unload\n");
    }
}

TEST_F(HostStream, DiagnosticsStandBetweenWhatTheHostWrites) {
    EXPECT_EQ(stderr_of([] {
                  std::cerr << "host 1\n";
                  vexacm_get_driver_name(0);
                  std::fputs("host 2\n", stderr);
                  vexacm_get_driver_name(0);
              }),
              "host 1\n"
              "Compiler Manager Error: Please call vexacm_initialize_librariesbefore using other "
              "functions.\n"
              "host 2\n"
              "Compiler Manager Error: Please call vexacm_initialize_librariesbefore using other "
              "functions.\n");
}

TEST_F(HostStream, NothingIsWrittenToTheOtherStreams) {
    Noting_buffer out;
    Noting_buffer log;
    std::streambuf* const former_out = std::cout.rdbuf(&out);
    std::streambuf* const former_log = std::clog.rdbuf(&log);
    std::fflush(stdout);
    const int saved = dup(1);
    close(1);
    // Whatever is written to descriptor 1 now would end up in this file.
    const int written = memfd_create("stdout", 0);
    stderr_of([&] { make_diagnostics(); });
    std::fflush(stdout);
    EXPECT_EQ(written, 1);
    EXPECT_EQ(lseek(1, 0, SEEK_END), 0);
    dup2(saved, 1);
    close(saved);
    std::cout.rdbuf(former_out);
    std::clog.rdbuf(former_log);
    EXPECT_EQ(out.notes, std::vector<std::string>());
    EXPECT_EQ(log.notes, std::vector<std::string>());
}

} // namespace
