#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Sets the machine up, builds Orlimo and starts it.
#
#   ./run.sh [argument of Orlimo...]
#   ./run.sh --virtual
#
# On a machine without a display, or with --virtual, Orlimo starts on a screen of its own with an
# example profile, is worked by its hotkey, and what it showed is left in build/screenshots/.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/scripts/common.sh"
cd "$root"

program=build/release/src/Orlimo
packages=(build)
virtual=false
if [[ ${1:-} == --virtual || -z ${DISPLAY:-} ]]; then
    virtual=true
    packages+=(run)
fi

begin_phase "Set-up"
scripts/setup-debian.sh "${packages[@]}"

begin_phase "Build"
cmake --preset release
cmake --build --preset release --target orlimo --parallel "$(nproc)"

if [[ $virtual == false ]]; then
    end_phase
    exec "$program" "$@"
fi

begin_phase "Orlimo on a virtual screen"
scripts/show-main-job.sh "$program" build/screenshots
end_phase
