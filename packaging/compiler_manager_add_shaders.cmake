# SPDX-License-Identifier: MIT
#
#   compiler_manager_add_shaders(
#       <target> [ALL] SOURCES <file>...
#       [FILTERS <option>...] [DEFINES <name[=value]>...] [KERNELS <name>...]
#       [OUTPUT_DIRECTORY <folder>] [PLUGINS <folder>] [DEPENDS <target>...])
#
# Adds a target that compiles each source with the first compiler that returns
# binaries and passes the filters, which are options of `vexacm list`, such as
# --core Vexa-K460. What is compiled from dir/mesh.vert stands in
# <folder>/dir/mesh.vert.bin, and is compiled again when the source or the
# compiler's plug-in changes. The folder is <target> in the build folder if none
# is named. The binaries are listed in <target>_BINARIES.
#
# The plug-ins are those that vexacm finds if no folder is named; DEPENDS is for
# targets that build them or the sources.

function(compiler_manager_add_shaders target)
    cmake_parse_arguments(PARSE_ARGV 1 shaders
        "ALL" "OUTPUT_DIRECTORY;PLUGINS" "SOURCES;FILTERS;DEFINES;KERNELS;DEPENDS")
    if(NOT shaders_SOURCES)
        message(FATAL_ERROR "compiler_manager_add_shaders: SOURCES is missing")
    endif()
    if(shaders_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR
            "compiler_manager_add_shaders: '${shaders_UNPARSED_ARGUMENTS}' is not understood")
    endif()
    if(NOT compiler_manager_VEXACM)
        message(FATAL_ERROR "compiler_manager_add_shaders: the tool vexacm is not installed")
    endif()
    set(folder ${target})
    if(shaders_OUTPUT_DIRECTORY)
        set(folder ${shaders_OUTPUT_DIRECTORY})
    endif()
    cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR} NORMALIZE)

    set(command ${compiler_manager_VEXACM})
    if(shaders_PLUGINS)
        cmake_path(ABSOLUTE_PATH shaders_PLUGINS NORMALIZE)
        list(APPEND command --plugins ${shaders_PLUGINS})
    endif()
    list(APPEND command compile --quiet --binary-output true ${shaders_FILTERS})
    foreach(define IN LISTS shaders_DEFINES)
        list(APPEND command -D ${define})
    endforeach()

    set(binaries "")
    foreach(source IN LISTS shaders_SOURCES)
        cmake_path(ABSOLUTE_PATH source NORMALIZE)
        set(name "")
        foreach(base IN ITEMS ${CMAKE_CURRENT_BINARY_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
            cmake_path(IS_PREFIX base "${source}" is_below)
            if(is_below AND NOT name)
                cmake_path(RELATIVE_PATH source BASE_DIRECTORY ${base} OUTPUT_VARIABLE name)
            endif()
        endforeach()
        if(NOT name)
            message(FATAL_ERROR "compiler_manager_add_shaders: "
                "'${source}' is neither below the source folder nor below the build folder")
        endif()
        set(kernels "")
        if(source MATCHES "\\.cl$")
            list(TRANSFORM shaders_KERNELS PREPEND "--kernel=" OUTPUT_VARIABLE kernels)
        endif()
        set(binary "${folder}/${name}.bin")
        cmake_path(GET binary PARENT_PATH binary_folder)
        file(MAKE_DIRECTORY "${binary_folder}")
        add_custom_command(OUTPUT "${binary}"
            COMMAND ${command} ${kernels} -o "${binary}" --depfile "${binary}.d" -- "${source}"
            DEPENDS "${source}" ${shaders_DEPENDS}
            DEPFILE "${binary}.d"
            COMMENT "Compiling ${name}"
            VERBATIM)
        list(APPEND binaries "${binary}")
    endforeach()

    set(all "")
    if(shaders_ALL)
        set(all ALL)
    endif()
    add_custom_target(${target} ${all} DEPENDS ${binaries})
    set(${target}_BINARIES ${binaries} PARENT_SCOPE)
endfunction()
