#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Runs a Windows program under Wine with a profile of its own, which is gone afterwards (see
# scripts/wine.sh). CTest calls it for each test executable of a cross-build.
#
#   scripts/wine-run.sh [--qt DIR] program.exe [argument...]
#
# --qt names a Qt for Windows whose libraries the program finds, along with the compiler's; without
# it there are those beside the program alone. A DISPLAY in the environment is handed on.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
source "$root/scripts/wine.sh"

libraries=()
if [[ ${1:-} == --qt ]]; then
    libraries=("$2/bin")
    mapfile -t -O 1 libraries < <(compiler_library_directories)
    shift 2
fi

start_wine_profile "${libraries[@]}"
trap end_wine_profile EXIT
status=0
wine "$@" || status=$?
exit "$status"
