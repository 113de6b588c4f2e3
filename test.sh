#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Sets the machine up, builds a preset and runs every test.
#
#   ./test.sh [dev|release]
#
# The last line says "N passed, N failed": test functions and rows of all executables. Ends with a
# status other than 0 if anything failed or nothing ran.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/scripts/common.sh"
cd "$root"

preset=${1:-dev}
build_dir=build/$preset
ctest_output=$build_dir/ctest-output.txt
counted=false

# A build that breaks must not look like tests that passed.
finish() {
    local status=$?
    [[ $counted == true ]] || echo "0 passed, 0 failed"
    exit "$status"
}
trap finish EXIT

# Without strict_string_checks: they condemn a bounded strndup in the keyboard library of every X11
# program, which reads nothing out of bounds.
export_sanitizer_options() {
    export ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1
    export LSAN_OPTIONS="suppressions='$root/scripts/lsan.supp':print_suppressions=0"
    export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
}

begin_phase "Set-up"
scripts/setup-debian.sh build run
use_neutral_locale
leave_desktop_session

begin_phase "Configure ($preset)"
cmake --preset "$preset"

begin_phase "Build ($preset)"
cmake --build --preset "$preset" --parallel "$(nproc)"

begin_phase "Tests ($preset)"
export_sanitizer_options
# Results of an earlier run must not be counted again if this one ends before it writes its own.
rm -f "$build_dir/Testing/Temporary/LastTest.log" "$ctest_output"
ctest_status=0
ctest --preset "$preset" -j"$test_jobs" --output-on-failure --no-tests=error </dev/null |
    tee "$ctest_output" || ctest_status=$?
end_phase

counted=true
count_status=0
mkdir -p "$build_dir/Testing/Temporary"
touch "$build_dir/Testing/Temporary/LastTest.log"
count=$(awk -f scripts/count-tests.awk "$ctest_output" \
    "$build_dir/Testing/Temporary/LastTest.log") || count_status=$?
if [[ $ctest_status -ne 0 && $count_status -eq 0 ]]; then
    echo "CTest itself ended with status $ctest_status."
fi
echo "$count"
[[ $ctest_status -eq 0 && $count_status -eq 0 ]]
