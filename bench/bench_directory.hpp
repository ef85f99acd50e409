// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// A temporary plug-in directory with copies of the plug-in of the benchmarks.
class Bench_directory {
public:
    explicit Bench_directory(unsigned int num_plugins);
    ~Bench_directory();
    Bench_directory(const Bench_directory&) = delete;
    Bench_directory& operator=(const Bench_directory&) = delete;

    const std::string& root() const { return directory; }

    /// The path of a copy, counted from 0.
    std::string plugin(unsigned int number) const;

private:
    std::string directory;
};
