// SPDX-License-Identifier: MIT
#include "cache_test.hpp"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

Process_result Cache_test::cached(std::vector<std::string> arguments,
                                  std::string_view setup) const {
    arguments.insert(arguments.end(), {"--cache", "cache"});
    return ordered(std::move(arguments), setup);
}

Process_result Cache_test::cache(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "cache");
    arguments.insert(arguments.begin() + 2, "cache");
    return vexacm(arguments);
}

std::vector<std::string> Cache_test::files_with_names_of(std::size_t length) const {
    std::vector<std::string> found;
    if (fs::exists(path("cache")))
        for (const auto& entry : fs::recursive_directory_iterator(path("cache")))
            if (entry.path().filename().string().size() == length)
                found.push_back(entry.path());
    std::sort(found.begin(), found.end());
    return found;
}

std::string Cache_test::snapshot(const std::string& folder) const {
    std::vector<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(path(folder)))
        found.push_back(entry.path().string() +
                        (entry.is_regular_file() ? ": " + read_file(entry.path()) : "") + "\n");
    std::sort(found.begin(), found.end());
    std::string all;
    for (const std::string& file : found)
        all += file;
    return all;
}

void Cache_test::expect_same(const Process_result& result, const Process_result& expected,
                             const char* file, int line) {
    expect(result, expected.status, expected.out, expected.err, file, line);
}

std::string cache_holds(std::size_t entries, std::size_t blocks, std::size_t unfinished) {
    return "entries: " + std::to_string(entries) + "\nbytes: " + std::to_string(4096 * blocks) +
           "\nunfinished: " + std::to_string(unfinished) + "\n";
}
