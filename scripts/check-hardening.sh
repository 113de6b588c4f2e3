#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Reads from release binaries whether they were hardened as cmake/Hardening.cmake says, and names
# what is missing. Takes programs of Linux and of Windows.
#
#   scripts/check-hardening.sh program...

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
missing=0

# A fact that holds if the file has a line that matches.
expect() { # what it is, file, pattern
    if ! grep -qE -- "$3" "$work/$2"; then
        echo "check-hardening: $program: no $1" >&2
        missing=$((missing + 1))
    fi
}

check_linux() {
    readelf -hW "$program" >"$work/header"
    readelf -lW "$program" >"$work/segments"
    readelf -dW "$program" >"$work/dynamic"
    readelf --dyn-syms -W "$program" >"$work/symbols"
    # Prints only what is looked for, out of a million lines.
    objdump -d --no-show-raw-insn "$program" |
        awk '/\tendbr64/ { ++marks } /\torq? +\$0x0,(0x[0-9a-f]+)?\(%rsp\)/ { ++probes }
             END { print "marks", marks + 0; print "probes", probes + 0 }' >"$work/code"

    expect 'position-independent executable' header 'Type: +DYN '
    expect 'position-independent executable' dynamic 'Flags:.*\bPIE\b'
    expect 'binding at start (now)' dynamic 'Flags:.*\bNOW\b'
    expect 'relocations made read-only' segments 'GNU_RELRO'
    expect 'stack without execution' segments 'GNU_STACK.* RW  '
    expect 'stack protector' symbols '\b__stack_chk_fail\b'
    expect 'fortified functions' symbols '\b__[a-z]+_chk\b'
    expect 'assertions of the standard library' symbols '__glibcxx_assert_fail'
    if [[ $(readelf -hW "$program") == *X86-64* ]]; then
        # The compiler's start-up code alone has a handful.
        expect 'control-flow protection' code 'marks [0-9]{3,}'
        expect 'stack clash protection' code 'probes [1-9]'
    fi
}

check_windows() {
    local objdump=x86_64-w64-mingw32-objdump
    "$objdump" -p "$program" >"$work/header"
    "$objdump" -h "$program" >"$work/sections"
    strings "$program" >"$work/strings"
    expect 'address that changes (DYNAMIC_BASE)' header '\bDYNAMIC_BASE\b'
    expect '64-bit addresses (HIGH_ENTROPY_VA)' header '\bHIGH_ENTROPY_VA\b'
    expect 'stack without execution (NX_COMPAT)' header '\bNX_COMPAT\b'
    # Without the table the first of these is an empty promise.
    expect 'table of relocations' sections ' \.reloc '
    expect 'stack protector' strings 'stack smashing detected'
    expect 'assertions of the standard library' header '__glibcxx_assert_fail'
}

if [[ $# -eq 0 ]]; then
    echo "check-hardening.sh: which program?" >&2
    exit 2
fi
for program in "$@"; do
    case $(head -c 2 "$program" | od -An -c) in
        *M*Z*) check_windows ;;
        *) check_linux ;;
    esac
done
[[ $missing -eq 0 ]] || exit 1
echo "hardening: $*: all there"
