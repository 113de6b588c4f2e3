#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Has a built program audit its own palette, and fails if a text doesn't reach its contrast, or
# reads worse than it once did, on any of the accent colours that the audits look at. What they
# measured goes to the given file. Needs no display.
#
#   scripts/check-palette.sh PROGRAM REPORT

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

program=$(realpath "$1")
report=$2
home=$(mktemp -d "${TMPDIR:-/tmp}/orlimo-palette.XXXXXX")
trap 'rm -rf "$home"' EXIT
leave_desktop_session

audit() { # switch...
    env HOME="$home" XDG_DATA_HOME="$home" XDG_CONFIG_HOME="$home" XDG_CACHE_HOME="$home" \
        XDG_RUNTIME_DIR="$home" timeout 120 "$program" "$@"
}

# The line that ends an audit. Its time stamp and level stand before it.
expect() { # what, line
    if ! grep -qF -- "] $2" "$report"; then
        echo "check-palette: $1" >&2
        status=1
    fi
}

mkdir -p "$(dirname "$report")"
audit --audit-contrast
audit --audit-color "$home/colours"
cp "$home/Orlimo/Orlimo/debug.log" "$report"

status=0
expect 'a text of a sample is hard to read' \
    '=== AUDIT SELESAI -- pelanggaran tersisa setelah onColorFor: 0 ==='
expect 'a text of some hue is hard to read, or reads worse than it did' \
    '=== SAPUAN SELESAI -- 5760 pasangan | di bawah ambang: 0 | KEMUNDURAN: 0 ==='
if ! diff "$root/tests/data/palette.tsv" "$home/colours"; then
    echo 'check-palette: the colours differ from those in tests/data/palette.tsv' >&2
    status=1
fi
grep -F -- ' SELESAI ' "$report" || true
exit "$status"
