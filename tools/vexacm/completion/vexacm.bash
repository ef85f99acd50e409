# SPDX-License-Identifier: MIT
# Completion of vexacm for bash.

# The words of one column of the list, with the plug-ins that the line names.
_vexacm_column() {
    local plugins=() i
    for ((i = 1; i < COMP_CWORD; i++)); do
        [[ ${COMP_WORDS[i]} == --plugins ]] && plugins=(--plugins "${COMP_WORDS[i + 1]}")
    done
    vexacm list "${plugins[@]}" 2>/dev/null | awk -v column="$1" 'NR > 1 { print $column }'
}

_vexacm() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local filters="--driver --core --revision --api --binary-output --min-version"
    local command="" words="" i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        --plugins) ((i++)) ;;
        list | info | compile | batch | merge | cache)
            command=${COMP_WORDS[i]}
            break
            ;;
        esac
    done

    COMPREPLY=()
    case $previous in
    --plugins | --outputs | --cache)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        return
        ;;
    -o | --depfile | --manifest | --sarif | --junit | --html | --resume)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
        ;;
    --driver) words=$(_vexacm_column 2) ;;
    --core) words=$(_vexacm_column 3) ;;
    --revision) words=$(_vexacm_column 4) ;;
    --api) words="openglessl opencl" ;;
    --binary-output) words="true false" ;;
    --stage)
        words="vertex fragment compute geometry tessellation_control tessellation_evaluation kernel"
        ;;
    --min-version | --kernel | -D | -j | --timeout | --memory-limit | --give-up-after | --shard | \
        --cache-size) return ;;
    *)
        case $command:$current in
        :-*) words="-h --help --version --plugins" ;;
        :*) words="list info compile batch merge cache" ;;
        list:-*) words="-h --help --plugins --json $filters" ;;
        info:-*) words="-h --help --plugins --json" ;;
        info:*) words=$(_vexacm_column 1) ;;
        compile:-*)
            words="-h --help --plugins --stage $filters --all -D --kernel --prerotate -o"
            words+=" --depfile --cache --cache-size --json --quiet"
            ;;
        batch:-*)
            words="-h --help --plugins $filters -D --kernel --prerotate --manifest -j --timeout"
            words+=" --memory-limit --give-up-after --json --ordered --sarif --junit --html --outputs"
            words+=" --shard --resume --dry-run --cache --cache-size"
            ;;
        merge:-*) words="-h --help --plugins --json --sarif --junit --html" ;;
        cache:-*) words="-h --help --plugins --cache-size --json" ;;
        cache:*) words="info trim clear $(compgen -d -- "$current")" ;;
        compile:* | batch:* | merge:*)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
            ;;
        esac
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

complete -F _vexacm vexacm
