// SPDX-License-Identifier: MIT
#include "run_files.hpp"

Run_files::Everything Run_files::everything(const Arguments& arguments) const {
    Arguments with_lines = arguments;
    with_lines.insert(with_lines.end(),
                      {"--json", "--sarif", "sarif", "--junit", "junit", "--html", "html"});
    const Process_result lines = vexacm(with_lines);
    Everything all;
    for (const std::string report : {"sarif", "junit", "html"})
        all.reports += read_file(path(report));
    const Process_result summary = vexacm(arguments);
    EXPECT_EQ(lines.status, summary.status);
    all.lines = lines.out;
    all.summary = summary.out;
    all.err = lines.err + summary.err;
    all.status = lines.status;
    return all;
}

Run_files::Everything Run_files::one_run(Arguments arguments) const {
    arguments.insert(arguments.begin(), "batch");
    Everything all = everything(arguments);
    arguments.insert(arguments.end(), {"--json", "--ordered"});
    all.lines = vexacm(arguments).out;
    return all;
}

Run_files::Everything Run_files::merged(Arguments files) const {
    files.insert(files.begin(), "merge");
    return everything(files);
}

std::string Run_files::shard(int number, int of, Arguments arguments) const {
    const std::string part = std::to_string(number) + "/" + std::to_string(of);
    arguments.insert(arguments.begin(), {"--json", "--shard", part});
    return file("shard-" + std::to_string(number) + "-of-" + std::to_string(of),
                batch(arguments).out);
}

std::string Run_files::file(const std::string& name, std::string_view text) const {
    write_file(path(name), text);
    return name;
}

std::vector<std::string> Run_files::split(std::string_view lines) {
    std::vector<std::string> all;
    while (!lines.empty()) {
        all.emplace_back(lines.substr(0, lines.find('\n') + 1));
        lines.remove_prefix(all.back().size());
    }
    return all;
}

Run_files::Arguments Run_files::sources() const {
    add_source("a.frag");
    add_source("b.frag", "ERROR");
    add_source("c\xff.frag", "WARN");
    add_source("d.frag", "FAIL");
    add_source("e.frag", "BINARY");
    return {"a.frag",    "b.frag", "c\xff.frag", "d.frag", "e.frag",
            "none.frag", "a.frag", "-D",         "A=1"};
}
