// SPDX-License-Identifier: MIT
#include "report_test.hpp"
#include "reports/html.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace fs = std::filesystem;

using vexacm_tool::write_html;

namespace {

/// Works in an empty folder of its own, where sources are looked for.
class Html : public testing::Test {
protected:
    Html() : folder_(testing::TempDir() + "vexacm_html_XXXXXX") {
        if (::mkdtemp(folder_.data()) != nullptr)
            fs::current_path(folder_);
    }
    ~Html() override {
        fs::current_path("/");
        fs::remove_all(folder_);
    }

    static void add_source(const std::string& name, const std::string& text) {
        if (fs::path(name).has_parent_path())
            fs::create_directories(fs::path(name).parent_path());
        std::ofstream(name, std::ios::binary) << text;
    }

private:
    std::string folder_;
};

// What lies between the page's two parts, which know nothing of the results.
std::string data_of(const Made_results& results) {
    const std::string page = written(write_html, results);
    const std::size_t start = page.find("<script type=");
    return page.substr(start, page.rfind("<script>") - start);
}

std::string source_of(const std::string& name) {
    Made_results results;
    results.add(name, K580);
    const std::string data = data_of(results);
    const std::string start = "<script type=\"application/json\" id=\"source-0\">";
    const std::size_t at = data.find(start) + start.size();
    return data.substr(at, data.find("</script>", at) - at);
}

TEST_F(Html, SomeOfEverything) {
    add_source("shaders/a.frag", "#version 310 es\nvoid main() {}\n");
    add_source("odd \"name\" &<1>\n%#?:\xff\u202E.frag", "</script>\u2028\xff<!--\r\n\x01");
    expect_golden("everything.html-data.txt", data_of(some_of_everything()));
}

TEST_F(Html, NoJobs) {
    expect_golden("no_jobs.html-data.txt", data_of({}));
}

TEST_F(Html, DataThenOnlyBytesThatNoBrowserReadsOtherwise) {
    const std::string data = data_of(some_of_everything());
    EXPECT_TRUE(std::all_of(data.begin(), data.end(), [](char byte) {
        return byte == '\n' || (byte >= 0x20 && byte < 0x7F);
    }));
    for (std::size_t at = data.find('<'); at != std::string::npos; at = data.find('<', at + 1)) {
        const std::string tag = data.substr(at, 9);
        EXPECT_TRUE(tag == "<script t" || tag == "</script>") << tag;
    }
}

TEST_F(Html, WholePageAroundTheData) {
    const std::string page = written(write_html, {});
    EXPECT_EQ(page.substr(0, 16), "<!DOCTYPE html>\n");
    EXPECT_EQ(page.substr(page.find("</body>")), "</body>\n</html>\n");
}

TEST_F(Html, SourceThatCannotBeReadThenSaysSo) {
    EXPECT_EQ(source_of("missing.frag"), R"({"error":"No such file or directory"})");
    fs::create_directory("folder.frag");
    EXPECT_EQ(source_of("folder.frag"), R"({"error":"not a regular file"})");
    ASSERT_EQ(::mkfifo("pipe.frag", 0600), 0);
    EXPECT_EQ(source_of("pipe.frag"), R"({"error":"not a regular file"})");
    fs::create_symlink("loop.frag", "loop.frag");
    EXPECT_EQ(source_of("loop.frag"), R"({"error":"Too many levels of symbolic links"})");
    EXPECT_EQ(source_of(std::string(300, 'n')), R"({"error":"File name too long"})");
}

TEST_F(Html, SourceUpToOneMebibyteThenWhole) {
    constexpr std::size_t LARGEST = 1 << 20;
    add_source("empty.frag", "");
    EXPECT_EQ(source_of("empty.frag"), R"({"text":""})");
    add_source("largest.frag", std::string(LARGEST, 'a'));
    EXPECT_EQ(source_of("largest.frag"), R"({"text":")" + std::string(LARGEST, 'a') + R"("})");
    add_source("larger.frag", std::string(LARGEST + 1, 'a'));
    EXPECT_EQ(source_of("larger.frag"), R"({"error":"longer than 1 MiB"})");
}

TEST_F(Html, SourceOfSeveralRowsThenStoredOnce) {
    Made_results results;
    for (const char* const define : {"A", "B"})
        results.add("a.frag", K580).defines = {define};
    results.add("b.frag", K580);
    const std::string data = data_of(results);
    EXPECT_NE(data.find("id=\"source-1\""), std::string::npos);
    EXPECT_EQ(data.find("id=\"source-2\""), std::string::npos);
    EXPECT_NE(data.find("\"sources\":[\n\"a.frag\",\n\"b.frag\"],"), std::string::npos);
}

} // namespace
