# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT

# What makes a bug in an optimised build end the program instead of opening it to others. Checked
# from the binaries by scripts/check-hardening.sh. Sanitizers bring checks of their own, with which
# these would get in each other's way.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)

set(orlimo_is_release $<OR:$<CONFIG:Release>,$<CONFIG:RelWithDebInfo>,$<CONFIG:MinSizeRel>>)

# Adds a compiler's flag where the compiler has it.
function(orlimo_harden_with flag)
    string(MAKE_C_IDENTIFIER "ORLIMO_HAS${flag}" has_flag)
    check_cxx_compiler_flag(${flag} ${has_flag})
    if(${has_flag})
        target_compile_options(orlimo_options INTERFACE $<${orlimo_is_release}:${flag}>)
    endif()
endfunction()

# MSVC needs no telling: the protections that it has are on by themselves.
if(NOT MSVC AND NOT ORLIMO_SANITIZE)
    # The third level needs to know sizes that are only found out at run time: GCC 12, Clang 9.
    set(CMAKE_REQUIRED_FLAGS "-O2 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
    check_cxx_source_compiles("
        #include <cstdlib>
        #if defined(__MINGW32__) || !__GLIBC_PREREQ(2, 34) || __USE_FORTIFY_LEVEL != 3
        #error
        #endif
        int main() {}" ORLIMO_HAS_FORTIFY_3)
    unset(CMAKE_REQUIRED_FLAGS)
    set(fortify_level $<IF:$<BOOL:${ORLIMO_HAS_FORTIFY_3}>,3,2>)
    target_compile_options(orlimo_options INTERFACE
        $<${orlimo_is_release}:-U_FORTIFY_SOURCE>
        $<${orlimo_is_release}:-D_FORTIFY_SOURCE=${fortify_level}>
        $<${orlimo_is_release}:-D_GLIBCXX_ASSERTIONS>)
    if(MINGW)
        # Compiled in rather than loaded: one library less to pack. Probing of the stack is part of
        # what every Windows program does, and the processor's control-flow protection has no
        # support for programs from this compiler.
        target_compile_options(orlimo_options INTERFACE
            $<${orlimo_is_release}:-fstack-protector-strong>)
        target_link_libraries(orlimo_options INTERFACE $<${orlimo_is_release}:-l:libssp.a>)
        target_link_options(orlimo_options INTERFACE
            -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat)
    else()
        orlimo_harden_with(-fstack-protector-strong)
        orlimo_harden_with(-fstack-clash-protection)
        orlimo_harden_with(-fcf-protection)
        target_link_options(orlimo_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
    endif()
endif()
