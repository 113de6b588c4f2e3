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
# BUILD_DIR in the environment names another build tree to take the compile commands from. What was
# found clean isn't looked at again, in this checkout or another, until something that it is made of
# has changed.

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
    touch "$clean_dir/$2"
}
export -f tidy_file
export tidy_dir clean_dir

# Each source with one of the project's files that it is made of, by what the compiler has read.
list_inputs() {
    ninja -C "$build_dir" -t deps | awk -v root="$root/" -v from="$root/$build_dir/" '
        /^[^ ]/ { source = ""; next }
        !NF { next }
        {
            sub(/^ +/, "")
            if ($0 !~ /^\//) $0 = from $0
            while (sub(/[^\/]+\/\.\.\//, "")) continue
        }
        source == "" { source = $0 }
        index($0, root) == 1 { print source "\t" $0 }' | sort -u
}

list_commands() {
    awk -F '"' '/^ *"command"/ { command = $0 } /^ *"file"/ { print $4 "\t" command }' \
        "$tidy_dir/compile_commands.json"
}

# Sets `prints`: for each source that was built a word that is the same as long as its findings are.
take_prints() {
    local source file hash line tools
    declare -A hashes parts
    tools=$({ cat .clang-tidy scripts/tidy.sh && dpkg-query -W; } | sha256sum)
    list_inputs >"$tidy_dir/inputs"
    while read -r hash file; do
        hashes[$file]=$hash
    done < <(cut -f 2 "$tidy_dir/inputs" | sort -u | xargs -r -d '\n' sha256sum --)
    while IFS=$'\t' read -r source file; do
        parts[$source]+="${file#"$root"} ${hashes[$file]}"$'\n'
    done <"$tidy_dir/inputs"
    while IFS=$'\t' read -r source line; do
        [[ -n ${parts[$source]:-} ]] || continue
        hash=$(printf '%s\n' "$tools" "${line//"$root"/}" "${parts[$source]}" | sha256sum)
        prints[$source]=${hash%% *}
    done < <(list_commands)
}

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
for source in "${sources[@]}"; do
    [[ -f $source ]] || {
        echo "tidy.sh: no such file: $source" >&2
        exit 1
    }
done
clean_dir=${XDG_CACHE_HOME:-$HOME/.cache}/orlimo/tidy
mkdir -p "$clean_dir"
find "$clean_dir" -type f -mtime +60 -delete
declare -A prints
take_prints
due=()
# The longest go first, so that none of them is left to run alone at the end.
while read -r source; do
    print=${prints[$(realpath "$source")]:-}
    [[ -n $print && -e $clean_dir/$print ]] || due+=("$source" "${print:-unbuilt}")
done < <(ls -S -- "${sources[@]}")
# shellcheck disable=SC2016 # expanded by the inner shell
[[ ${#due[@]} -eq 0 ]] ||
    printf '%s\0' "${due[@]}" | xargs -0 -n 2 -P "$(nproc)" bash -ec 'tidy_file "$@"' tidy
rm -f "$clean_dir/unbuilt"
echo "tidy: $((${#due[@]} / 2)) of ${#sources[@]} files in $SECONDS s"
