# SPDX-License-Identifier: MIT
# What every target of this project is made with.

# Language level, warnings and sanitizers; linked by every target of ours.
add_library(vexacm_settings INTERFACE)
target_compile_features(vexacm_settings INTERFACE cxx_std_17 c_std_11)
target_compile_options(vexacm_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion)
if(VEXACM_WARNINGS_ARE_ERRORS)
    target_compile_options(vexacm_settings INTERFACE -Werror)
endif()
if(VEXACM_SANITIZE)
    target_compile_options(vexacm_settings INTERFACE
        -fsanitize=${VEXACM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    # They leave symbols to the program.
    target_link_options(vexacm_settings INTERFACE -fsanitize=${VEXACM_SANITIZE} -Wl,-z,undefs)
endif()

# The plug-in interface alone, for what must not see the caller's side.
add_library(vexaoc INTERFACE)
add_library(compiler_manager::vexaoc ALIAS vexaoc)
target_include_directories(vexaoc INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:include>)

# Says in one line that something is not built, or fails where that is not wanted.
function(vexacm_leave_out what packages)
    if(VEXACM_STRICT)
        message(FATAL_ERROR "${what} cannot be built: install ${packages}")
    endif()
    message(STATUS "${what} is left out: it needs ${packages}")
endfunction()

# A library that is opened at run time, under the very file name given, in the
# build folder's DIRECTORY; the map names what it exports.
function(vexacm_add_module target directory file_name map)
    add_library(${target} MODULE)
    set_target_properties(${target} PROPERTIES
        PREFIX "" SUFFIX "" OUTPUT_NAME ${file_name}
        LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${directory}
        C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
        LINK_DEPENDS ${map})
    target_link_options(${target} PRIVATE -Wl,--version-script=${map} -Wl,-z,defs)
    target_link_libraries(${target} PRIVATE vexacm_settings compiler_manager::vexaoc)
endfunction()
