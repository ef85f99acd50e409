// SPDX-License-Identifier: MIT
// Where reports and progress go.
#include "batch_test.hpp"

#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace {

class Reporting : public Batch_test {
protected:
    Reporting() { add_source("a.frag", "ERROR"); }
};

TEST_F(Reporting, ReportsThenEachInItsFileBesideTheSummary) {
    const auto alone = batch({"a.frag"});
    EXPECT_EQ(alone.status, 1);
    const auto result = batch({"a.frag", "--sarif", "s", "--junit", "j", "--html", "h"});
    EXPECT_EQ(result.out, alone.out);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(files(), (std::vector<std::string>{"a.frag", "h", "j", "s"}));
    EXPECT_EQ(read_file(path("j")).rfind("<?xml", 0), 0U);
    EXPECT_NE(read_file(path("s")).find("\"2.1.0\""), std::string::npos);
    EXPECT_NE(read_file(path("h")).find("</html>"), std::string::npos);
}

TEST_F(Reporting, ReportsThenTheSameHoweverTheyAreRun) {
    add_source("b.frag", "WARN");
    const auto reports = [this](const std::string& workers) {
        batch({path("a.frag"), path("b.frag"), "-j", workers, "--sarif", path("s"), "--junit",
               path("j"), "--html", path("h"), "--json"},
              workers == "1" ? "" : "cd /");
        return read_file(path("s")) + read_file(path("j")) + read_file(path("h"));
    };
    const std::string once = reports("1");
    EXPECT_EQ(reports("2"), once);
    EXPECT_EQ(reports("5"), once);
}

TEST_F(Reporting, OneFailsThenTheOthersAreWritten) {
    const auto result =
        batch({"a.frag", "--sarif", "/dev/full", "--junit", "j", "--html", "h", "--json"});
    EXPECT_EQ(result.err, "vexacm: cannot write /dev/full: No space left on device\n");
    EXPECT_EQ(result.status, 5);
    EXPECT_EQ(files(), (std::vector<std::string>{"a.frag", "h", "j"}));
}

TEST_F(Reporting, NoFolderForOneThenNothingIsRun) {
    expect(batch({"a.frag", "--html", "none/h"}), 5, "",
           "vexacm: cannot write none/h: there is no such folder\n");
    EXPECT_EQ(take_requests(), "");
}

TEST_F(Reporting, InterruptedThenReportsHaveWhatIsDone) {
    on("WAIT", "hang");
    add_source("b.frag", "WAIT");
    const auto result =
        batch({"-j", "1", "a.frag", "b.frag", "--core", "Vexa-K460", "--junit", "j"},
              "(until grep -qs WAIT '" + plugins.root() +
                  "/../log'; do sleep 0.02; done; kill -INT $$) >/dev/null 2>&1 &");
    EXPECT_EQ(result.status, 130);
    EXPECT_NE(result.out.find("2 jobs: 1 compiled, 1 not run"), std::string::npos) << result.out;
    EXPECT_NE(read_file(path("j")).find("</testsuites>"), std::string::npos);
}

/// A terminal, as far as programs can tell.
class Terminal {
public:
    Terminal() : descriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
        ::grantpt(descriptor);
        ::unlockpt(descriptor);
    }
    ~Terminal() { ::close(descriptor); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    std::string name() const { return ::ptsname(descriptor); }
    std::string take() const {
        std::string text;
        char part[4096];
        for (ssize_t size; (size = ::read(descriptor, part, sizeof part)) > 0;)
            text.append(part, static_cast<std::size_t>(size));
        return text;
    }

private:
    int descriptor;
};

TEST_F(Reporting, TerminalThenProgressThatVanishes) {
    on("WAIT", "hang");
    add_source("b.frag", "WAIT");
    const Terminal terminal;
    // Holds it open: what was written is lost with its last user.
    const int held = ::open(terminal.name().c_str(), O_RDWR | O_NOCTTY);
    for (const bool json : {false, true}) {
        std::vector<std::string> arguments{"--timeout", "0.5", "b.frag", "--core", "Vexa-K460"};
        if (json)
            arguments.push_back("--json");
        batch(arguments, "exec 2>" + terminal.name());
        const std::string shown = terminal.take();
        const std::string hidden = "\r\x1b[K";
        if (json) {
            EXPECT_EQ(shown, "");
            continue;
        }
        EXPECT_EQ(shown.rfind(hidden + "0 of 1 jobs, 0 failed" + hidden, 0), 0U) << shown;
        EXPECT_EQ(shown.substr(shown.size() - hidden.size()), hidden);
    }
    ::close(held);
}

} // namespace
