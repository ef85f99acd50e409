# SPDX-License-Identifier: MIT
# Debian packages, one a component: script/package builds and checks them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "the compiler manager authors")
set(CPACK_PACKAGE_CONTACT "the compiler manager authors <maintainers@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_OUTPUT_FILE_PREFIX packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})

# CPack would put another summary in front of each package's own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_NAME} built using CMake")

set(library libcompiler-manager${PROJECT_VERSION_MAJOR})
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/shlibs
    "libcompiler_manager ${PROJECT_VERSION_MAJOR} ${library} (>= ${PROJECT_VERSION})\n")
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    ${CMAKE_CURRENT_BINARY_DIR}/shlibs ${CMAKE_CURRENT_BINARY_DIR}/triggers)
execute_process(COMMAND gzip --best --no-name --stdout ${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog
    OUTPUT_FILE ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz)

# vexacm_package(COMPONENT PACKAGE SECTION DEPENDS SUMMARY TEXT)
# What a package needs of the system is found by dpkg-shlibdeps. Its documents are
# installed with the component alone.
function(vexacm_package component package section depends summary text)
    string(TOUPPER CPACK_DEBIAN_${component} key)
    set(${key}_PACKAGE_NAME ${package} PARENT_SCOPE)
    set(${key}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(${key}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(${key}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
    set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
    install(FILES debian/copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}
        COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()

set(same_version "(= ${PROJECT_VERSION})")
vexacm_package(runtime ${library} libs ""
    "one interface to a directory of offline GPU shader compilers"
    "Finds the compilers of a plug-in directory, lists and filters them by driver,
core, revision and API, and compiles GLSL ES shaders and OpenCL kernels with
the one that the caller chose.")
vexacm_package(development libcompiler-manager-dev libdevel "${library} ${same_version}"
    "one interface to offline GPU shader compilers - development files"
    "Headers for callers and for authors of plug-ins, with files for CMake and
pkg-config.")
vexacm_package(python python3-compiler-manager python "python3:any, ${library} ${same_version}"
    "one interface to offline GPU shader compilers - Python module"
    "A module on ctypes that lists compilers and compiles with them.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/python/postinst
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/python/prerm)
if(TARGET vexacm)
    vexacm_package(tool vexacm devel "${library} ${same_version}"
        "command-line tool for offline GPU shader compilers"
        "Lists the compilers of a plug-in directory and compiles shaders and kernels
with them.")
    set(CPACK_DEBIAN_TOOL_PACKAGE_RECOMMENDS compiler-manager-plugins)
    set(CPACK_DEBIAN_TOOL_PACKAGE_SUGGESTS compiler-manager-opencl)
endif()
if(TARGET glsl_plugin)
    vexacm_package(plugins compiler-manager-plugins libs ""
        "shader compiler plug-in for the OpenGL ES Shading Language"
        "A plug-in of the compiler manager that compiles GLSL ES shaders to SPIR-V.")
    set(CPACK_DEBIAN_PLUGINS_PACKAGE_ENHANCES ${library})
endif()
if(TARGET opencl_plugin)
    vexacm_package(opencl_plugin compiler-manager-opencl libs ""
        "shader compiler plug-in for OpenCL C"
        "A plug-in of the compiler manager that compiles OpenCL kernels to SPIR-V.")
    set(CPACK_DEBIAN_OPENCL_PLUGIN_PACKAGE_ENHANCES ${library})
endif()
include(CPack)
