#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Runs clang-tidy over the program's own sources with the checks of .clang-tidy. Needs the preset
# `dev` built, for its compile commands and the files that moc has made.
#
#   scripts/tidy.sh [file...]     (default: all of src/ that this system compiles, which leaves out
#                                  src/platform/windows)
#
# BUILD_DIR in the environment names another build tree to take the compile commands from.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"

build_dir=${BUILD_DIR:-build/dev}
if [[ ! -f $build_dir/compile_commands.json ]]; then
    echo "tidy.sh: build the preset dev first (./test.sh dev)" >&2
    exit 1
fi

# Without the precompiled headers, which are GCC's: clang-tidy reads what a source includes by itself,
# and so tells where one only compiles thanks to them.
tidy_dir=$build_dir/tidy
mkdir -p "$tidy_dir"
sed 's| -Winvalid-pch -include [^ ]*/cmake_pch\.hxx||' "$build_dir/compile_commands.json" \
    >"$tidy_dir/compile_commands.json"

# The compile commands are GCC's. Clang parses the same code for the findings alone: it must not
# stop at a flag or a warning name that only GCC knows, nor at the sanitizers' instrumentation. One
# warning is Clang's alone: a header of xcb has a member called `explicit`, so whoever includes it
# has to rename that keyword for its length.
tidy_file() {
    clang-tidy-14 -p "$tidy_dir" --quiet \
        --extra-arg=-Wno-unknown-warning-option \
        --extra-arg=-Wno-ignored-optimization-argument \
        --extra-arg=-Wno-keyword-macro \
        --extra-arg=-fno-sanitize=all "$1" 2> >(grep -v ' warnings\? .*generated\.$' >&2)
}
export -f tidy_file
export tidy_dir

list_sources() {
    sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$build_dir/compile_commands.json" |
        grep "^$root/src/.*\.cpp\$" | sort -u
}

if [[ $# -gt 0 ]]; then
    sources=("$@")
else
    mapfile -t sources < <(list_sources)
fi
if [[ ${#sources[@]} -eq 0 ]]; then
    echo "tidy.sh: no sources found" >&2
    exit 1
fi
# The longest go first, so that none of them is left to run alone at the end.
mapfile -t sources < <(ls -S -- "${sources[@]}")
# shellcheck disable=SC2016 # expanded by the inner shell
printf '%s\0' "${sources[@]}" | xargs -0 -P "$(nproc)" -I {} bash -c 'tidy_file "$1"' tidy {}
echo "tidy: ${#sources[@]} files in $SECONDS s"
