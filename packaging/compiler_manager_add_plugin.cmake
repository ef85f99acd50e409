# SPDX-License-Identifier: MIT
#
#   compiler_manager_add_plugin(
#       NAME <target> API <opencl|openglessl> DRIVER <driver> SOURCES <file>...)
#
# Adds the plug-in of one driver release as a library that the compiler manager
# can open: plugins/<API>/libVexa-<DRIVER>.so in the build folder, which
# `vexacm --plugins plugins list` shows there. It exports the five functions of
# vexaoc.h and nothing else.

function(compiler_manager_add_plugin)
    cmake_parse_arguments(PARSE_ARGV 0 plugin "" "NAME;API;DRIVER" "SOURCES")
    foreach(argument IN ITEMS NAME API DRIVER SOURCES)
        if(NOT plugin_${argument})
            message(FATAL_ERROR "compiler_manager_add_plugin: ${argument} is missing")
        endif()
    endforeach()
    if(plugin_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR
            "compiler_manager_add_plugin: '${plugin_UNPARSED_ARGUMENTS}' is not understood")
    endif()
    if(NOT plugin_API MATCHES "^(opencl|openglessl)$")
        message(FATAL_ERROR
            "compiler_manager_add_plugin: API is '${plugin_API}', not opencl or openglessl")
    endif()
    if(NOT plugin_DRIVER MATCHES "^(K300|200)_r[0-9]+p[0-9]+-[0-9]+rel[0-9]+$")
        message(FATAL_ERROR "compiler_manager_add_plugin: DRIVER is '${plugin_DRIVER}', "
            "not of the form K300_r1p0-00rel0")
    endif()

    # The manager reads both folders and complains of one that is not there.
    set(folder ${PROJECT_BINARY_DIR}/plugins)
    file(MAKE_DIRECTORY ${folder}/opencl ${folder}/openglessl)
    set(map ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/plugin.map)
    add_library(${plugin_NAME} MODULE ${plugin_SOURCES})
    set_target_properties(${plugin_NAME} PROPERTIES
        PREFIX "" SUFFIX "" OUTPUT_NAME libVexa-${plugin_DRIVER}.so
        LIBRARY_OUTPUT_DIRECTORY ${folder}/${plugin_API}
        C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
        LINK_DEPENDS ${map})
    target_link_options(${plugin_NAME} PRIVATE -Wl,--version-script=${map})
    # The manager opens it with RTLD_NOW: what is missing is to show here and now.
    # (sanitizers leave symbols to the program)
    if(NOT "${CMAKE_C_FLAGS} ${CMAKE_CXX_FLAGS}" MATCHES "-fsanitize")
        target_link_options(${plugin_NAME} PRIVATE -Wl,-z,defs)
    endif()
    target_link_libraries(${plugin_NAME} PRIVATE compiler_manager::vexaoc)
endfunction()
