// SPDX-License-Identifier: MIT
// Lists the compilers of a plug-in directory, and compiles with the first.
#include <exception>
#include <iostream>
#include <vexacm.hpp>

namespace {

void list_and_compile(const std::string& plugins) {
    const vexacm::Library library(plugins);
    vexacm::Filters filters;
    filters.api = "openglessl";
    const vexacm::Compiler_ids ids(filters);
    for (const unsigned int id : ids) {
        const vexacm::Compiler compiler(id);
        std::cout << id << ": " << compiler.core << ' ' << compiler.revision << '\n';
    }
    if (ids.empty())
        return;

    vexacm::Request request;
    request.source = "void main() {}";
    request.stage = "vertex";
    if (const auto outputs = vexacm::compile(request, *ids.begin()))
        std::cout << (outputs->compiled() ? "compiled" : "errors") << '\n';
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " PLUGINS\n";
        return 2;
    }
    try {
        list_and_compile(argv[1]);
    } catch (const std::exception& error) {
        std::cerr << argv[1] << ": " << error.what() << '\n';
        return 1;
    }
    return std::cout.flush() ? 0 : 1;
}
