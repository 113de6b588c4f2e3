# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT

# Warnings, sanitizers and definitions that every target of ours is built with.
add_library(orlimo_options INTERFACE)

target_compile_definitions(orlimo_options INTERFACE
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(MSVC)
    # Its system headers define min() and max(), others leave these to the standard library.
    target_compile_definitions(orlimo_options INTERFACE NOMINMAX)
    target_compile_options(orlimo_options INTERFACE /W4 /utf-8 /permissive-
        $<$<BOOL:${ORLIMO_WERROR}>:/WX>)
else()
    target_compile_options(orlimo_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast
        -Woverloaded-virtual -Wnon-virtual-dtor
        $<$<BOOL:${ORLIMO_WERROR}>:-Werror>)
endif()

if(ORLIMO_SANITIZE)
    target_compile_options(orlimo_options INTERFACE
        -fsanitize=${ORLIMO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(orlimo_options INTERFACE -fsanitize=${ORLIMO_SANITIZE})
endif()
