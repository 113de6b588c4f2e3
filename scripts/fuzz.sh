#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Builds the fuzz targets with Clang and the sanitizers and runs each for some seconds.
#
#   scripts/fuzz.sh [seconds]
#
# What a target finds is kept in build/fuzz/findings/.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"

seconds=${1:-10}
build_dir=$root/build/fuzz
use_neutral_locale

cmake -S . -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER=clang++-14 -DORLIMO_FUZZ=ON -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O2 -g1 -DNDEBUG" \
    -DORLIMO_SANITIZE=address,undefined -DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link
mapfile -t targets < <(find tests/fuzz -name 'fuzz_*.cpp' -printf '%f\n' | sed 's/\.cpp$//' | sort)
cmake --build "$build_dir" --parallel "$(nproc)" --target "${targets[@]}"

homes=$(mktemp -d)
trap 'rm -rf "$homes"' EXIT
mkdir -p "$build_dir/findings"

# Each in a home directory of its own, because one runs beside another.
run_target() { # target
    local home=$homes/$1 log=$build_dir/$1.log
    mkdir -p "$build_dir/corpus/$1" "$home"
    HOME=$home XDG_DATA_HOME=$home/data XDG_RUNTIME_DIR=$home \
        "$build_dir/tests/fuzz/$1" -max_total_time="$seconds" -print_final_stats=1 \
        -artifact_prefix="$build_dir/findings/$1-" "$build_dir/corpus/$1" >"$log" 2>&1 || {
        tail -n 40 "$log"
        return 1
    }
    printf '%s: %s s, %s\n' "$1" "$seconds" "$(grep -E 'number_of_executed_units' "$log")"
}
export -f run_target
export homes build_dir seconds

# shellcheck disable=SC2016 # expanded by the inner shell
printf '%s\0' "${targets[@]}" |
    xargs -0 -P "$(nproc)" -I {} bash -euo pipefail -c 'run_target "$1"' fuzz {}
