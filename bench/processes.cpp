// SPDX-License-Identifier: MIT
// Many sources in one process, through the library, and with one process each.
//
//   processes ROW PLUGINS JOBS SECONDS COMMAND...
//
// JOBS holds a line for each source: its file, its stage and its kernels,
// between blanks. %F and %S in the command stand for the first two.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include "paired.hpp"
#include "vexacm.h"

namespace {

struct Job {
    std::string file, stage, source;
    std::vector<std::string> kernels;
};

std::vector<Job> read_jobs(const char* path) {
    std::vector<Job> jobs;
    std::ifstream lines(path);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        Job job;
        words >> job.file >> job.stage;
        for (std::string kernel; words >> kernel;)
            job.kernels.push_back(kernel);
        std::ifstream file(job.file);
        job.source.assign(std::istreambuf_iterator<char>(file), {});
        jobs.push_back(job);
    }
    return jobs;
}

unsigned int compiler_for(const char* api) {
    unsigned int* ids = nullptr;
    unsigned int count = 0;
    vexacm_get_compilers(&ids, &count, nullptr, nullptr, nullptr, api, nullptr, 0);
    const unsigned int id = count > 0 ? ids[0] : 0;
    vexacm_release_compilers(&ids, count);
    if (count == 0)
        std::exit(1);
    return id;
}

void compile(const Job& job, unsigned int id) {
    std::vector<const char*> kernels;
    for (const std::string& kernel : job.kernels)
        kernels.push_back(kernel.c_str());
    vexaoc_outputs outputs;
    vexacm_compile(&outputs, job.source.c_str(), job.stage.c_str(), kernels.data(),
                   static_cast<int>(kernels.size()), true, false, nullptr, 0, id);
    vexacm_release_compiler_outputs(&outputs);
}

void run(const Job& job, const std::vector<std::string>& command) {
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    for (std::string& word : words) {
        if (word == "%F")
            word = job.file;
        if (word == "%S")
            word = job.stage;
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&quiet, 1, 2);
    pid_t child = 0;
    if (posix_spawnp(&child, arguments[0], &quiet, nullptr, arguments.data(), environ) != 0)
        std::exit(1);
    posix_spawn_file_actions_destroy(&quiet);
    waitpid(child, nullptr, 0);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 6)
        return 2;
    const std::vector<Job> jobs = read_jobs(argv[3]);
    const std::vector<std::string> command(argv + 5, argv + argc);
    const auto library = paired::slice_of([&] {
        vexacm_initialize_libraries(argv[2]);
        const unsigned int id =
            compiler_for(jobs.front().stage == "kernel" ? "opencl" : "openglessl");
        for (const Job& job : jobs)
            compile(job, id);
        vexacm_release_libraries();
    });
    const auto processes = paired::slice_of([&] {
        for (const Job& job : jobs)
            run(job, command);
    });
    paired::compare(argv[1], static_cast<double>(jobs.size()), library, processes,
                    std::atof(argv[4]));
}
