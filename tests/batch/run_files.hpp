// SPDX-License-Identifier: MIT
#pragma once

#include "batch_test.hpp"

/// Runs of which the results go to files, and come from there.
class Run_files : public Batch_test {
protected:
    /// Everything that a run, or a merge, writes.
    struct Everything {
        std::string lines;
        std::string summary;
        std::string reports; ///< SARIF, JUnit and HTML, one behind the other
        std::string err;
        int status;

        bool operator==(const Everything& other) const {
            return lines == other.lines && summary == other.summary && reports == other.reports &&
                   err == other.err && status == other.status;
        }
    };

    using Arguments = std::vector<std::string>;

    /// Of `vexacm` with these arguments, once with --json and once without.
    Everything everything(const Arguments& arguments) const;
    Everything one_run(Arguments arguments) const;
    Everything merged(Arguments files) const;

    /// Runs a shard, and returns the file that its lines are in.
    std::string shard(int number, int of, Arguments arguments) const;

    /// Writes a file into the folder of the run.
    std::string file(const std::string& name, std::string_view text) const;

    static std::vector<std::string> split(std::string_view lines);

    /// The command line for sources of all kinds, which are there then. What ends
    /// workers or does not end is not among them.
    Arguments sources() const;
};
