// SPDX-License-Identifier: MIT
// The catalogue of one plug-in with many cores: how it is made and how it is
// queried, beside a vector of records made and scanned by hand. Both open the
// plug-in, which is open already.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "bench_directory.hpp"
#include "bench_plugin.h"
#include "direct_plugin.hpp"
#include "paired.hpp"
#include "vexacm.h"
#include "vexacm_internal_compiler.hpp"

namespace {

// With six version numbers, the highest version of the language, flags and a
// share of the plug-in behind the texts.
struct Record {
    std::string driver_name, core_name, reported_core_name, core_revision, api_name, extensions;
    std::array<char, 56> rest;
};

// What is compared, in a record as large as an entry of the catalogue.
struct Scanned_record {
    std::string text;
    std::array<char, 128 - sizeof(std::string)> rest;
};
static_assert(sizeof(Scanned_record) == sizeof(VexaCM::Vexacm_internal_compiler));

// What the catalogue is to look like, found out beforehand: with the numbers to
// sort by.
struct Core {
    std::array<std::uint32_t, 5> key;
    std::string display_name;
};

std::vector<Core> cores_of(const Direct_plugin& plugin) {
    vexaoc_capabilities capabilities = {};
    plugin.get_capabilities(&capabilities);
    std::vector<Core> cores;
    for (std::uint32_t i = 0; i < capabilities.num_cores; ++i) {
        const std::string reported = capabilities.cores[i].core_name;
        Core core = {{}, "Vexa-K" + reported.substr(1, 2) + "0"};
        core.key[0] = static_cast<std::uint32_t>(std::stoul(core.display_name.substr(6)));
        std::sscanf(capabilities.cores[i].core_revision, "r%1up%1u_%urel%u", &core.key[1],
                    &core.key[2], &core.key[3], &core.key[4]);
        cores.push_back(core);
    }
    return cores;
}

std::vector<Record> by_hand(const std::string& root, const std::vector<Core>& cores) {
    const auto plugins = open_all(root);
    const Direct_plugin& plugin = *plugins.front();
    vexaoc_api_version version = {};
    vexaoc_capabilities capabilities = {};
    for (int pass = 0; pass < 2; ++pass) {
        plugin.get_api_version(&version);
        plugin.get_capabilities(&capabilities);
        plugin.release_capabilities(&capabilities);
    }
    std::vector<std::uint32_t> order(cores.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(),
              [&](std::uint32_t a, std::uint32_t b) { return cores[a].key > cores[b].key; });

    std::vector<Record> records;
    records.reserve(cores.size());
    for (const std::uint32_t i : order)
        records.push_back({"Vexa-K300_r0p0-00rel0",
                           cores[i].display_name,
                           capabilities.cores[i].core_name,
                           capabilities.cores[i].core_revision,
                           "openglessl",
                           "",
                           {}});
    return records;
}

std::vector<unsigned int> scan(const std::vector<Scanned_record>& records,
                               const std::string& text) {
    std::vector<unsigned int> ids;
    for (std::size_t i = 0; i < records.size(); ++i)
        if (records[i].text == text)
            ids.push_back(static_cast<unsigned int>(i));
    return ids;
}

void query(const char* core_name, const char* core_revision) {
    unsigned int* ids = nullptr;
    unsigned int count = 0;
    vexacm_get_compilers(&ids, &count, nullptr, core_name, core_revision, nullptr, nullptr, 0);
    paired::keep(ids);
    vexacm_release_compilers(&ids, count);
}

// A directory with one plug-in of that many cores. It is open throughout, so that
// their number stays set.
struct Bench_catalogue {
    explicit Bench_catalogue(std::uint32_t num_cores_) : num_cores(num_cores_) {
        plugin.function<void(std::uint32_t)>("bench_plugin_set_cores")(num_cores);
        cores = cores_of(plugin);
    }

    void by_library() const {
        vexacm_initialize_libraries(directory.root().c_str());
        vexacm_release_libraries();
    }
    void by_floor() const { paired::keep(by_hand(directory.root(), cores)); }

    std::uint32_t num_cores;
    Bench_directory directory{1};
    Direct_plugin plugin{directory.plugin(0)};
    std::vector<Core> cores;
};

void bench_cores(const Bench_catalogue& bench) {
    paired::compare("cores", bench.num_cores, paired::slice_of([&] { bench.by_library(); }),
                    paired::slice_of([&] { bench.by_floor(); }), 1);
}

// Ten times as many cores, beside the fewer ten times.
void bench_growth(const Bench_catalogue& fewer, const Bench_catalogue& more) {
    const auto compare = [&](const char* row, void (Bench_catalogue::*work)() const) {
        paired::compare(row, fewer.num_cores, paired::slice_of([&] { (more.*work)(); }),
                        paired::slice_of([&] {
                            for (int i = 0; i < 10; ++i)
                                (fewer.*work)();
                        }),
                        1);
    };
    compare("growth", &Bench_catalogue::by_library);
    compare("growth by hand", &Bench_catalogue::by_floor);
}

void bench_queries(const Bench_catalogue& bench) {
    vexacm_initialize_libraries(bench.directory.root().c_str());
    const std::vector<Record> entries = by_hand(bench.directory.root(), bench.cores);
    const auto compare = [&](const char* row, std::string Record::*text, const std::string& asked,
                             const char* core_name, const char* core_revision) {
        std::vector<Scanned_record> records;
        records.reserve(entries.size());
        for (const Record& entry : entries)
            records.push_back({entry.*text, {}});
        paired::compare(row, bench.num_cores,
                        paired::slice_of([&] { query(core_name, core_revision); }),
                        paired::slice_of([&] { paired::keep(scan(records, asked)); }), 0.5);
    };
    compare("query", &Record::core_name, "Vexa-K460", "Vexa-K460", nullptr);
    const std::string revision = entries[entries.size() / 2].core_revision;
    compare("query, revision", &Record::core_revision, revision, nullptr, revision.c_str());
    vexacm_release_libraries();
}

} // namespace

int main() {
    std::unique_ptr<Bench_catalogue> fewer;
    for (const std::uint32_t num_cores : {100U, 1000U, 10000U, 100000U, 1000000U}) {
        auto bench = std::make_unique<Bench_catalogue>(num_cores);
        bench_queries(*bench); // before the others move memory about
        bench_cores(*bench);
        if (fewer)
            bench_growth(*fewer, *bench);
        fewer = std::move(bench);
    }
}
