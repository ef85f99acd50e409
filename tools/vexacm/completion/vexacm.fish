# SPDX-License-Identifier: MIT
# Completion of vexacm for fish.

# The words of one column of the list, with the plug-ins that the line names.
function __vexacm_column
    set -l line (commandline -opc)
    set -l plugins
    if set -l at (contains -i -- --plugins $line)
        set plugins --plugins $line[(math $at + 1)]
    end
    vexacm list $plugins 2>/dev/null | awk -v column=$argv[1] 'NR > 1 { print $column }'
end

set -l commands list info compile batch merge cache
set -l none "not __fish_seen_subcommand_from $commands"
set -l filtered "__fish_seen_subcommand_from list compile batch"
set -l compiles "__fish_seen_subcommand_from compile batch"
set -l compile "__fish_seen_subcommand_from compile"
set -l batch "__fish_seen_subcommand_from batch"
set -l reports "__fish_seen_subcommand_from batch merge"
set -l cache "__fish_seen_subcommand_from cache"

complete -c vexacm -f
complete -c vexacm -s h -l help -d "Print a help message"
complete -c vexacm -l plugins -x -a "(__fish_complete_directories)" -d "Plug-in directory"
complete -c vexacm -n $none -l version -d "Print the version"
complete -c vexacm -n $none -a list -d "List compilers"
complete -c vexacm -n $none -a info -d "Tell all about one"
complete -c vexacm -n $none -a compile -d "Compile a source"
complete -c vexacm -n $none -a batch -d "Compile many"
complete -c vexacm -n $none -a merge -d "Join shards"
complete -c vexacm -n $none -a cache -d "Look at a cache"

complete -c vexacm -n "__fish_seen_subcommand_from $commands" -l json -d "Print JSON"
complete -c vexacm -n $filtered -l driver -x -a "(__vexacm_column 2)" -d "Driver release"
complete -c vexacm -n $filtered -l core -x -a "(__vexacm_column 3)" -d "Core"
complete -c vexacm -n $filtered -l revision -x -a "(__vexacm_column 4)" -d "Revision of the core"
complete -c vexacm -n $filtered -l api -x -a "openglessl opencl" -d "Language"
complete -c vexacm -n $filtered -l binary-output -x -a "true false" -d "Returns binaries"
complete -c vexacm -n $filtered -l min-version -x -d "Lowest language version"

complete -c vexacm -n "__fish_seen_subcommand_from info" -a "(__vexacm_column 1)"
complete -c vexacm -n $compiles -F
complete -c vexacm -n $compile -l stage -x -d "What the file is" \
    -a "vertex fragment compute geometry tessellation_control tessellation_evaluation kernel"
complete -c vexacm -n $compiles -s D -x -d "Definition"
complete -c vexacm -n $compiles -l kernel -x -d "Kernel to build"
complete -c vexacm -n $compiles -l prerotate -d "Pre-rotate the output"
complete -c vexacm -n $compile -l all -d "With all compilers that pass"
complete -c vexacm -n $compile -s o -r -F -d "File for the binary"
complete -c vexacm -n $compile -l quiet -d "Print nothing but diagnostics"
complete -c vexacm -n $compile -l depfile -r -F -d "File for what it depends on"

complete -c vexacm -n $compiles -l cache -x -a "(__fish_complete_directories)" -d "Folder that keeps results"
complete -c vexacm -n "__fish_seen_subcommand_from compile batch cache" -l cache-size -x -d "What it may take"
complete -c vexacm -n $cache -a "info trim clear (__fish_complete_directories)"

complete -c vexacm -n $batch -l manifest -r -F -d "Sources with options"
complete -c vexacm -n $batch -s j -x -d "Workers"
complete -c vexacm -n $batch -l timeout -x -d "What a job may take"
complete -c vexacm -n $batch -l memory-limit -x -d "What a worker may take"
complete -c vexacm -n $batch -l give-up-after -x -d "Workers that a compiler may cost"
complete -c vexacm -n $batch -l ordered -d "In job order"
complete -c vexacm -n $reports -l sarif -r -F -d "File for the diagnostics"
complete -c vexacm -n $reports -l junit -r -F -d "File for the jobs as tests"
complete -c vexacm -n $reports -l html -r -F -d "File for a page"
complete -c vexacm -n $batch -l outputs -x -a "(__fish_complete_directories)" -d "Directory for the binaries"
complete -c vexacm -n $batch -l shard -x -d "Part of the jobs"
complete -c vexacm -n $batch -l dry-run -d "Print the jobs"
complete -c vexacm -n $batch -l resume -r -F -d "File of what is done"

complete -c vexacm -n "__fish_seen_subcommand_from merge" -F
