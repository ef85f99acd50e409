# SPDX-License-Identifier: MIT
# What makes faults in what is installed harder to abuse, as far as the compiler
# and the linker know it. tests/packaging looks at what came of it.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

add_library(vexacm_hardening INTERFACE)
if(NOT VEXACM_SANITIZE) # sanitizers see more, and want the calls unchanged
    foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection=full)
        string(MAKE_C_IDENTIFIER "VEXACM_HAS${flag}" has)
        check_cxx_compiler_flag(${flag} ${has})
        if(${has})
            target_compile_options(vexacm_hardening INTERFACE ${flag})
        endif()
    endforeach()
    # It works on optimised code only. Some compilers define it by themselves.
    target_compile_options(vexacm_hardening INTERFACE
        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
        $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()
foreach(flag relro now noexecstack)
    check_linker_flag(CXX -Wl,-z,${flag} VEXACM_HAS_LINKER_${flag})
    if(VEXACM_HAS_LINKER_${flag})
        target_link_options(vexacm_hardening INTERFACE -Wl,-z,${flag})
    endif()
endforeach()

# Hardens those of the targets that are built.
function(vexacm_harden)
    foreach(target IN LISTS ARGN)
        if(TARGET ${target})
            target_link_libraries(${target} PRIVATE vexacm_hardening)
        endif()
    endforeach()
endfunction()
