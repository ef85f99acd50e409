// SPDX-License-Identifier: MIT
//
// Gives a target every file of the folders named, instead of what a fuzzer
// makes up.
#include <cstdio>
#include <filesystem>

#include "plugin_directory.hpp"
#include "target.hpp"

int main(int count, char** arguments) {
    unsigned files = 0;
    for (int i = 1; i < count; ++i)
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
            std::printf("%s\n", entry.path().c_str());
            std::fflush(stdout);
            const std::string text = read_file(entry.path());
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
            ++files;
        }
    return files > 0 ? 0 : 1;
}
