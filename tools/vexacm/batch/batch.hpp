// SPDX-License-Identifier: MIT
#pragma once

#include "../cache/cache.hpp"
#include "report_files.hpp"
#include "shard.hpp"
#include "sources.hpp"

#include <optional>
#include <string>
#include <vector>
#include <vexacm.hpp>

namespace vexacm_tool {

/// One for each processor that this process may use.
unsigned int processors();

/// What to compile, with which compilers and how, and where the results go.
struct Batch {
    std::vector<Source> sources;
    vexacm::Filters filters;
    bool all_compilers = true; ///< or, for each API, the first
    std::vector<std::string> defines;
    bool prerotate = false;
    unsigned int workers = processors();
    double timeout = 60;           ///< seconds for a job
    unsigned int memory_limit = 0; ///< in megabytes, 0: none
    unsigned int give_up_after = 3;
    bool json = false; ///< lines instead of the summary
    bool ordered = false;
    Report_files reports;
    std::optional<std::string> outputs; ///< directory for the binaries
    bool dry_run = false;               ///< only print what there is to do
    std::optional<Shard> shard;         ///< or all
    std::optional<std::string> resume;  ///< file of what is done already
    Cache_settings cache;
};

/// Compiles every source with every compiler for it, in worker processes.
/// Throws Failure.
Exit_status run_batch(Batch batch, const std::optional<std::string>& plugins);

} // namespace vexacm_tool
