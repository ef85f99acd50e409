// SPDX-License-Identifier: MIT
#include "bench_directory.hpp"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

Bench_directory::Bench_directory(unsigned int num_plugins)
    : directory((fs::temp_directory_path() / "bench-XXXXXX").string()) {
    if (!mkdtemp(directory.data()))
        throw std::runtime_error("cannot make a temporary directory");
    fs::create_directory(directory + "/openglessl");
    fs::create_directory(directory + "/opencl");
    // Copies: the loader takes two links to one file for one library.
    for (unsigned int number = 0; number < num_plugins; ++number)
        fs::copy_file(BENCH_PLUGIN, plugin(number));
}

Bench_directory::~Bench_directory() {
    std::error_code ignored;
    fs::remove_all(directory, ignored);
}

std::string Bench_directory::plugin(unsigned int number) const {
    return directory + "/openglessl/libVexa-K300_r" + std::to_string(number / 10) + "p" +
           std::to_string(number % 10) + "-00rel0.so";
}
