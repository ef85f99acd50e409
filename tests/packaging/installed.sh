#!/bin/sh
# Installs the build into a folder, moves that folder, and uses what is in it as
# an outsider does: with pkg-config, with CMake, from C, from C++, with dlopen.
#
#   installed.sh SOURCE_DIRECTORY BUILD_DIRECTORY LIBRARY_DIRECTORY VERSION
set -eu
outside=$1/tests/packaging/outside
build=$2
lib=$3
version=$4

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "$*" >&2
    exit 1
}
expect() { # TEXT COMMAND...
    expected=$1
    shift
    printed=$("$@" 2>&1) || fail "'$*' failed and printed: $printed"
    [ "$printed" = "$expected" ] || fail "'$*' printed: $printed"
}

cmake --install "$build" --prefix "$work/first" >"$work/log" || fail "$(cat "$work/log")"
prefix=$work/moved
mv "$work/first" "$prefix"
! grep -rqF -e "$work/first" -e "$build" "$prefix/$lib/cmake" "$prefix/$lib/pkgconfig" ||
    fail "a text names where it was built or first installed"

# The library as a package has it: one file, two links, the headers.
expect "libcompiler_manager.so.${version%%.*}" readlink "$prefix/$lib/libcompiler_manager.so"
expect "libcompiler_manager.so.$version" readlink "$prefix/$lib/libcompiler_manager.so.${version%%.*}"
expect "vexacm.h
vexacm.hpp
vexaoc.h" ls "$prefix/include"

# Without the tool's own knowledge of the build folder.
if [ -x "$prefix/bin/vexacm" ]; then
    expect "vexacm $version" "$prefix/bin/vexacm" --version
    mkdir -p "$prefix/$lib/compiler_manager"
    [ ! -e "$prefix/$lib/compiler_manager/openglessl/libVexa-K300_r1p0-00rel0.so" ] ||
        "$prefix/bin/vexacm" list --api openglessl | grep -q 'Vexa-K460' ||
        fail "the installed tool does not find the installed plug-ins"
fi

# With CMake: two callers and a plug-in.
cmake -S "$outside" -B "$work/cmake" -D CMAKE_PREFIX_PATH="$prefix" >"$work/log" 2>&1 &&
    cmake --build "$work/cmake" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
LD_LIBRARY_PATH=$prefix/$lib
export LD_LIBRARY_PATH
for caller in caller_c caller_cpp; do
    expect "$version: 1 compilers" "$work/cmake/$caller" "$work/cmake/plugins"
done
expect "open" "$work/cmake/open_now" "$prefix/$lib/libcompiler_manager.so.${version%%.*}" \
    vexacm_compile
plugin=$work/cmake/plugins/openglessl/libVexa-K300_r5p0-06rel0.so
expect "open" "$work/cmake/open_now" "$plugin" vexaoc_compile
expect "vexaoc_compile
vexaoc_get_api_version
vexaoc_get_capabilities
vexaoc_release_capabilities
vexaoc_release_outputs" sh -c "nm -D --defined-only --format=just-symbols '$plugin'"

# What the function that adds plug-ins refuses.
refuse() { # MESSAGE ARGUMENTS
    printf '%s\n' 'cmake_minimum_required(VERSION 3.18)' 'project(wrong LANGUAGES C)' \
        'find_package(compiler_manager 4 CONFIG REQUIRED)' \
        "compiler_manager_add_plugin($2)" >"$work/wrong/CMakeLists.txt"
    ! cmake -S "$work/wrong" -B "$work/wrong/build" -D CMAKE_PREFIX_PATH="$prefix" \
        >"$work/log" 2>&1 || fail "compiler_manager_add_plugin($2) is accepted"
    tr -s ' \n' ' ' <"$work/log" | grep -qF "compiler_manager_add_plugin: $1" ||
        fail "compiler_manager_add_plugin($2): $(cat "$work/log")"
}
mkdir "$work/wrong"
given='NAME p SOURCES p.c'
refuse "API is 'gles', not opencl or openglessl" "$given API gles DRIVER K300_r1p0-00rel0"
refuse "DRIVER is 'K999_r1p0-00rel0', not of the form" "$given API opencl DRIVER K999_r1p0-00rel0"
refuse "SOURCES is missing" "NAME p API opencl DRIVER K300_r1p0-00rel0"
refuse "'x' is not understood" "x $given API opencl DRIVER K300_r1p0-00rel0"

# With pkg-config.
PKG_CONFIG_PATH=$prefix/$lib/pkgconfig
export PKG_CONFIG_PATH
expect "$version" pkg-config --modversion compiler_manager
[ "$(realpath "$(pkg-config --variable=plugindir compiler_manager)")" = \
    "$(realpath "$prefix/$lib/compiler_manager")" ] || fail "plugindir is another"
# shellcheck disable=SC2046 # a list of words
${CC:-cc} -o "$work/caller" "$outside/caller.c" $(pkg-config --cflags --libs compiler_manager)
expect "$version: 1 compilers" "$work/caller" "$work/cmake/plugins"
