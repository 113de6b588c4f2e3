#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Draws orlimo.ico anew after a change of the icon. The result is kept with the sources, so that a
# build needs neither of the programs (Debian: librsvg2-bin, imagemagick).

set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

images=()
# The sizes that Windows asks for at 100, 125, 150 and 200 percent, and the two of large views.
for size in 16 20 24 32 40 48 64 128 256; do
    rsvg-convert --width "$size" --height "$size" "$here/../linux/orlimo.svg" \
        --output "$work/$size.png"
    images+=("$work/$size.png")
done
convert "${images[@]}" "$here/orlimo.ico"
