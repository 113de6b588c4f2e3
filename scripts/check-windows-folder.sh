#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Checks a packed folder of Orlimo for Windows without running it: every library that anything in it
# loads is in the folder or part of Windows, and Orlimo.exe is what it should be.
#
#   scripts/check-windows-folder.sh DIRECTORY

set -euo pipefail

folder=$1
program=$folder/Orlimo.exe
failures=0
declare -A imports=() # of each file that can load others: names in lower case, one a line

# Part of every Windows 10 and later. A name is added here after looking it up, never because
# something happens to load it.
system_libraries=(
    advapi32 api-ms-win-core-synch-l1-2-0 api-ms-win-core-winrt-l1-1-0
    api-ms-win-core-winrt-string-l1-1-0 authz bcrypt comctl32 comdlg32 crypt32 d2d1 d3d9 d3d11
    d3d12 dnsapi dwmapi dwrite dxgi gdi32 imm32 iphlpapi kernel32 mpr msvcrt netapi32 ntdll
    ole32 oleaut32 rpcrt4 secur32 setupapi shcore shell32 shlwapi user32 userenv uxtheme version
    winhttp winmm winspool.drv ws2_32 wtsapi32
)

complain() {
    printf 'check-windows-folder.sh: %s\n' "$1" >&2
    failures=$((failures + 1))
}

imports_of() {
    x86_64-w64-mingw32-objdump -p "$1" | sed -n 's/^\tDLL Name: //p' | tr '[:upper:]' '[:lower:]'
}

# What can't be read fails the check here. So does what loads nothing: it isn't what it should be.
read_imports() {
    local binary binaries names
    binaries=$(find "$folder" -name '*.exe' -o -name '*.dll')
    while IFS= read -r binary; do
        if names=$(imports_of "$binary") && [[ -n $names ]]; then
            imports[$binary]=$names
        else
            complain "$binary has no list of the libraries that it loads"
        fi
    done <<<"$binaries"
}

is_part_of_windows() { # file name in lower case
    local library
    for library in "${system_libraries[@]}"; do
        [[ $1 != "$library" && $1 != "$library.dll" ]] || return 0
    done
    return 1
}

# Windows looks beside the program, never beside the plugin that does the loading.
is_beside_program() { # file name in lower case
    [[ -n $(find "$folder" -maxdepth 1 -iname "$1") ]]
}

check_imports() {
    local binary name
    for binary in "${!imports[@]}"; do
        while IFS= read -r name; do
            is_beside_program "$name" || is_part_of_windows "$name" ||
                complain "$binary loads $name, which is neither in the folder nor part of Windows"
        done <<<"${imports[$binary]}"
    done
}

# A library that nothing loads has no place in the folder.
check_libraries_are_used() {
    local library all_imports
    all_imports=$(printf '%s\n' "${imports[@]}")
    for library in "$folder"/*.dll; do
        grep -qixF "$(basename "$library")" <<<"$all_imports" || complain "nothing loads $library"
    done
}

check_is_windowed() {
    local headers
    headers=$(x86_64-w64-mingw32-objdump -p "$program")
    grep -q 'Subsystem.*Windows GUI' <<<"$headers" || complain "$program is not a windowed program"
}

resources_of_program() {
    x86_64-w64-mingw32-windres --input-format=coff --output-format=rc "$program"
}

check_resources() {
    local resources text
    resources=$(resources_of_program)
    for text in 'Type: icon' 'Type: group icon' VERSIONINFO; do
        grep -qF "$text" <<<"$resources" || complain "$program has no resource '$text'"
    done
    [[ $(grep -c 'RT_MANIFEST' <<<"$resources") -eq 1 ]] ||
        complain "$program has not exactly one manifest"
}

# On one line, without comments. It is stored in the program as it was written.
manifest_of_program() {
    tr -d '\0\r' <"$program" | tr '\n' ' ' | LC_ALL=C grep -aoE '<assembly .*</assembly>' |
        LC_ALL=C sed -E 's/<!--([^-]|-[^-])*-->//g'
}

check_manifest() {
    local manifest expression
    if ! manifest=$(manifest_of_program); then
        complain "$program has no manifest that can be read"
        return
    fi
    for expression in \
        '<longPathAware( [^>]*)?>true</longPathAware>' \
        '<dpiAwareness( [^>]*)?>PerMonitorV2(,[^<]*)?</dpiAwareness>' \
        '<requestedExecutionLevel( [^>]*)? level="asInvoker"' \
        '<dependency> *<dependentAssembly> *<assemblyIdentity( [^>]*)? name="Microsoft\.Windows\.Common-Controls" +version="6\.0\.0\.0"'; do
        grep -qE "$expression" <<<"$manifest" || complain "the manifest of $program lacks $expression"
    done
}

if [[ ! -f $program ]]; then
    complain "no $program"
    exit 1
fi
read_imports
check_imports
check_libraries_are_used
check_is_windowed
check_resources
check_manifest
[[ $failures -eq 0 ]] || exit 1
echo "$folder: complete, $(find "$folder" -name '*.dll' | wc -l) libraries"
