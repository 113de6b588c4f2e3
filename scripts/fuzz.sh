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
    -DCMAKE_CXX_COMPILER=clang++-14 -DORLIMO_FUZZ=ON \
    -DORLIMO_SANITIZE=address,undefined -DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link
mapfile -t targets < <(find tests/fuzz -name 'fuzz_*.cpp' -printf '%f\n' | sed 's/\.cpp$//' | sort)
cmake --build "$build_dir" --parallel "$(nproc)" --target "${targets[@]}"

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
mkdir -p "$build_dir/findings"
for target in "${targets[@]}"; do
    echo "$target: $seconds s"
    mkdir -p "$build_dir/corpus/$target"
    HOME=$home XDG_DATA_HOME=$home/data XDG_RUNTIME_DIR=$home \
        "$build_dir/tests/fuzz/$target" -max_total_time="$seconds" -print_final_stats=1 \
        -artifact_prefix="$build_dir/findings/$target-" "$build_dir/corpus/$target" \
        > "$build_dir/$target.log" 2>&1 || {
        tail -n 40 "$build_dir/$target.log"
        exit 1
    }
    grep -E 'number_of_executed_units' "$build_dir/$target.log"
done
