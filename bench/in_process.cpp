// SPDX-License-Identifier: MIT
// What `vexacm batch` is measured beside: every source of a list with one
// compiler, in this process, results thrown away.
//
//   in_process PLUGINS CORE LIST
#include <fstream>
#include <iterator>
#include <string>
#include <vexacm.hpp>

int main(int argc, char** argv) {
    if (argc != 4)
        return 2;
    const vexacm::Library library{argv[1]};
    vexacm::Filters filters;
    filters.core = argv[2];
    filters.api = "openglessl";
    const vexacm::Compiler_ids ids(filters);
    if (ids.empty())
        return 3;
    std::ifstream list(argv[3]);
    for (std::string file; std::getline(list, file);) {
        std::ifstream in(file, std::ios::binary);
        std::string source{std::istreambuf_iterator<char>(in), {}};
        const char* const stage = file.back() == 't' ? "vertex" : "fragment";
        if (!vexacm::compile({std::move(source), stage}, *ids.begin()))
            return 4;
    }
}
