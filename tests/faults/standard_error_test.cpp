// SPDX-License-Identifier: MIT
#include <functional>
#include <iostream>
#include <numeric>
#include <sstream>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include "diagnostics.hpp"
#include "scenario.hpp"

namespace {

// Standard error that does not take what is written to it. The diagnostics are
// lost, and nothing else changes.
class StandardErrorSaysNo : public Diagnostics_test {
protected:
    // The plug-ins are asked the same while `replace` has done something to
    // standard error.
    void expect_the_same_calls(const std::function<void()>& replace) {
        stderr_of([this] { make_diagnostics(); });
        const std::string log = plugins.take_log();
        EXPECT_NE(log, "");
        const int saved = dup(2);
        replace();
        make_diagnostics();
        dup2(saved, 2);
        close(saved);
        EXPECT_EQ(plugins.take_log(), log);
    }
};

[[maybe_unused]] std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> found;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        found.push_back(line + "\n");
    return found;
}

#ifdef __GLIBCXX__ // others write a line in pieces
TEST_F(StandardErrorSaysNo, OneWriteFails) {
    const std::vector<std::string> whole = lines(expected_diagnostics());
    Scenario scenario(plugins);
    scenario.act = [&] { make_diagnostics(); };
    scenario.result = [] { return ""; };
    const auto expected = [&](long number) -> Outcome {
        std::vector<std::string> left = whole;
        left.erase(left.begin() + number - 1);
        return {"", std::accumulate(left.begin(), left.end(), std::string()), ""};
    };
    EXPECT_EQ(scenario.fail_each(Call::WRITE, {"", expected_diagnostics(), ""}, expected),
              static_cast<long>(whole.size()));
}
#endif

TEST_F(StandardErrorSaysNo, TheDeviceIsFull) {
    expect_the_same_calls([] {
        const int full = open("/dev/full", O_WRONLY);
        EXPECT_GE(full, 0);
        dup2(full, 2);
        close(full);
    });
}

// Files that are opened now get its descriptor; no diagnostic goes there.
TEST_F(StandardErrorSaysNo, ItIsClosed) {
    expect_the_same_calls([] { close(2); });
}

TEST_F(StandardErrorSaysNo, ItIsOpenForReadingAlone) {
    expect_the_same_calls([] {
        const int empty = open("/dev/null", O_RDONLY);
        EXPECT_GE(empty, 0);
        dup2(empty, 2);
        close(empty);
    });
}

// A host's own buffer, which looks for what it needs when it is used first. That
// ends the life of the loader's text for an error before.
TEST_F(StandardErrorSaysNo, AndUsesTheLoaderItself) {
    class Looking_up : public std::streambuf {
    public:
        std::string text;

    private:
        std::streamsize xsputn(const char* part, std::streamsize size) override {
            EXPECT_EQ(dlsym(RTLD_DEFAULT, "no_such_function"), nullptr);
            text.append(part, static_cast<std::size_t>(size));
            return size;
        }
    } buffer;
    Plugin_directory directory;
    const std::string path =
        directory.add_file("opencl", "lib" + std::string(NEWEST) + ".so", "a text");
    std::streambuf* const former = std::cerr.rdbuf(&buffer);
    EXPECT_TRUE(vexacm_initialize_libraries(directory.root().c_str()));
    std::cerr.rdbuf(former);
    EXPECT_EQ(buffer.text, "Couldn't load library at " + path + "\nLibrary load error: " + path +
                               ": file too short\n");
}

} // namespace
