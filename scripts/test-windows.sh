#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Cross-builds Orlimo for Windows, packs it, and runs every test of that build under Wine, each with
# a Windows profile of its own; the end-to-end tests start what is in the zip, on a virtual screen.
#
#   scripts/test-windows.sh
#
# The last line says "N passed, N failed", as that of test.sh does.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
source "$root/scripts/virtual-screen.sh"
cd "$root"

build_dir=build/windows
ctest_output=$build_dir/ctest-output.txt
ctest_log=$build_dir/Testing/Temporary/LastTest.log
counted=false

finish() {
    local status=$?
    end_virtual_screen
    # A build that breaks must not look like tests that passed.
    [[ $counted == true ]] || echo "0 passed, 0 failed"
    exit "$status"
}
trap finish EXIT

scripts/build-windows.sh
scripts/setup-debian.sh run
use_neutral_locale
ORLIMO_QT_WIN64=$(scripts/build-qt-windows.sh)
export ORLIMO_QT_WIN64

begin_phase "Tests (windows)"
# The screen brings a home of its own; what is kept between runs isn't kept there.
cache_home=${XDG_CACHE_HOME:-$HOME/.cache}
start_virtual_screen
export XDG_CACHE_HOME=$cache_home
rm -f "$ctest_log" "$ctest_output"
ctest_status=0
ctest --preset windows -j"$wine_test_jobs" --no-tests=error </dev/null | tee "$ctest_output" || ctest_status=$?
end_phase

counted=true
count_status=0
mkdir -p "$(dirname "$ctest_log")"
touch "$ctest_log"
count=$(awk -f scripts/count-tests.awk "$ctest_output" "$ctest_log") || count_status=$?
if [[ $ctest_status -ne 0 && $count_status -eq 0 ]]; then
    echo "CTest itself ended with status $ctest_status."
fi
echo "$count"
[[ $ctest_status -eq 0 && $count_status -eq 0 ]]
