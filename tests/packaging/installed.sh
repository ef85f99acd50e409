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

# With CMake: shaders, compiled when they or the plug-in have changed.
build_shaders() { # NAMES OF THOSE THAT ARE COMPILED
    expected=$1
    cmake --build "$work/shaders" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
    compiled=$(sed -n 's/.*Compiling //p' "$work/log" | sort | tr '\n' ' ')
    [ "$compiled" = "$expected" ] || fail "not '$expected', but '$compiled': $(cat "$work/log")"
}
if [ -x "$prefix/bin/vexacm" ]; then
    for generator in "Unix Makefiles" Ninja; do
        rm -rf "$work/outside" "$work/shaders"
        cp -R "$outside" "$work/outside"
        cmake -S "$work/outside" -B "$work/shaders" -G "$generator" \
            -D CMAKE_PREFIX_PATH="$prefix" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
        binaries=$work/shaders/shaders/shaders
        expect "$binaries/plain.vert.bin;$binaries/with blank.frag.bin" cat "$work/shaders/binaries"
        build_shaders "shaders/plain.vert shaders/with blank.frag "
        expect "FOG
LIGHTS=4 + 1
precise void main() {}" cat "$binaries/with blank.frag.bin"
        build_shaders ""
        sleep 0.01 # the time of a file is that of the kernel's last tick
        echo "// changed" >>"$work/outside/shaders/with blank.frag"
        build_shaders "shaders/with blank.frag "
        expect "FOG
LIGHTS=4 + 1
precise void main() {}
// changed" cat "$binaries/with blank.frag.bin"
        sleep 0.01
        touch "$work/shaders/plugins/openglessl/libVexa-K300_r5p0-06rel0.so"
        build_shaders "shaders/plain.vert shaders/with blank.frag "
        rm "$binaries/plain.vert.bin"
        build_shaders "shaders/plain.vert "
    done
fi

# What these functions refuse.
refuse() { # FUNCTION MESSAGE ARGUMENTS
    printf '%s\n' 'cmake_minimum_required(VERSION 3.20)' 'project(wrong LANGUAGES C)' \
        'find_package(compiler_manager 4 CONFIG REQUIRED)' "$1($3)" >"$work/wrong/CMakeLists.txt"
    ! cmake -S "$work/wrong" -B "$work/wrong/build" -D CMAKE_PREFIX_PATH="$prefix" \
        >"$work/log" 2>&1 || fail "$1($3) is accepted"
    tr -s ' \n' ' ' <"$work/log" | grep -qF "$1: $2" || fail "$1($3): $(cat "$work/log")"
}
mkdir "$work/wrong"
add=compiler_manager_add_plugin
given='NAME p SOURCES p.c'
refuse $add "API is 'gles', not opencl or openglessl" "$given API gles DRIVER K300_r1p0-00rel0"
refuse $add "DRIVER is 'K999_r1p0-00rel0', not of the form" \
    "$given API opencl DRIVER K999_r1p0-00rel0"
refuse $add "SOURCES is missing" "NAME p API opencl DRIVER K300_r1p0-00rel0"
refuse $add "'x' is not understood" "x $given API opencl DRIVER K300_r1p0-00rel0"
add=compiler_manager_add_shaders
refuse $add "SOURCES is missing" "s ALL"
refuse $add "'x' is not understood" "s x SOURCES a.vert"
if [ -x "$prefix/bin/vexacm" ]; then
    refuse $add "'/a.vert' is neither below" "s SOURCES /a.vert"
else
    refuse $add "the tool vexacm is not installed" "s SOURCES a.vert"
fi

# With pkg-config.
PKG_CONFIG_PATH=$prefix/$lib/pkgconfig
export PKG_CONFIG_PATH
expect "$version" pkg-config --modversion compiler_manager
[ "$(realpath "$(pkg-config --variable=plugindir compiler_manager)")" = \
    "$(realpath "$prefix/$lib/compiler_manager")" ] || fail "plugindir is another"
# shellcheck disable=SC2046 # a list of words
${CC:-cc} -o "$work/caller" "$outside/caller.c" $(pkg-config --cflags --libs compiler_manager)
expect "$version: 1 compilers" "$work/caller" "$work/cmake/plugins"
