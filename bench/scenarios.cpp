// SPDX-License-Identifier: MIT
// One scenario, for script/instructions to count the library's instructions in.
#include <cstring>
#include <string>
#include <vector>

#include "bench_directory.hpp"
#include "bench_plugin.h"
#include "direct_plugin.hpp"
#include "vexacm.h"

namespace {

constexpr const char* source = "void main() {}";

class Catalogue {
public:
    explicit Catalogue(unsigned int num_plugins, std::uint32_t num_cores = 0)
        : directory(num_plugins), first(directory.plugin(0)) {
        if (num_cores > 0)
            first.function<void(std::uint32_t)>("bench_plugin_set_cores")(num_cores);
        vexacm_initialize_libraries(directory.root().c_str());
    }
    ~Catalogue() { vexacm_release_libraries(); }
    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;

private:
    Bench_directory directory;
    Direct_plugin first;
};

void compile(int times, const std::vector<const char*>& defines, const char* shader_type) {
    for (; times > 0; --times) {
        vexaoc_outputs outputs;
        vexacm_compile(&outputs, source, shader_type, nullptr, 0, true, false, defines.data(),
                       static_cast<int>(defines.size()), 0);
        vexacm_release_compiler_outputs(&outputs);
    }
}

void query(int times) {
    for (; times > 0; --times) {
        unsigned int* ids = nullptr;
        unsigned int count = 0;
        vexacm_get_compilers(&ids, &count, nullptr, "Vexa-K460", nullptr, nullptr, nullptr, 0);
        vexacm_release_compilers(&ids, count);
    }
}

int run(const std::string& scenario) {
    if (scenario == "initialise 100 plug-ins of 24 cores") {
        const Catalogue catalogue(100);
    } else if (scenario == "initialise 1 plug-in of 10,000 cores") {
        const Catalogue catalogue(1, 10000);
    } else if (scenario == "query 10,000 entries 100 times") {
        const Catalogue catalogue(1, 10000);
        query(100);
    } else if (scenario == "compile 10,000 times with 8 defines") {
        const Catalogue catalogue(1);
        compile(10000, std::vector<const char*>(8, "FEATURE=1"), "fragment");
    } else if (scenario == "refuse 1,000 requests") {
        const Catalogue catalogue(1);
        compile(1000, {}, "pixel");
    } else if (scenario == "probe the extensions of 24 compilers") {
        const Catalogue catalogue(1);
        for (unsigned int id = 0; id < 24; ++id)
            vexacm_get_extensions(id);
    } else {
        return 2;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    return argc == 2 ? run(argv[1]) : 2;
}
