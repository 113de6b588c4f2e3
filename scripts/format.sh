#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Lays out all C++ sources as .clang-format says.
#
#   scripts/format.sh            writes the files
#   scripts/format.sh --check    changes nothing, names what differs and fails if anything does

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"

if [[ ${1:-} == --check ]]; then
    mode=(--dry-run -Werror)
else
    mode=(-i)
fi

# Sought on disk and not in the index, so that a file just written is looked at as well.
mapfile -d '' -t sources < <(find src tests bench -type f \( -name '*.cpp' -o -name '*.h' \) -print0)
if [[ ${#sources[@]} -eq 0 ]]; then
    echo "format.sh: no sources found" >&2
    exit 1
fi
clang-format-14 "${mode[@]}" "${sources[@]}"
echo "format: ${#sources[@]} files"
