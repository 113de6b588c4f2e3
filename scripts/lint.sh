#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Looks over what no compiler sees: slips in shell scripts (shellcheck), misspelt words (codespell),
# and files without a copyright and a licence (REUSE). All three run, whatever the first one finds.

set -uo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root" || exit 1
use_neutral_locale
status=0

mapfile -d '' -t scripts < <(find scripts packaging -name '*.sh' -print0)
scripts+=(run.sh test.sh .ci/run)
shellcheck -x -P SCRIPTDIR -- "${scripts[@]}" || status=1
echo "shellcheck: ${#scripts[@]} scripts"

# Names in the code (doubleClick, kOwn) aren't English. What else is no mistake here stands, in lower
# case, in the file that -I names. Texts in other languages and bytes that are wrong on purpose are
# left out as whole files.
mapfile -d '' -t texts < <(find . \
    \( -path ./.git -o -path ./build -o -path ./LICENSES -o -path ./tests/data \) -prune -o \
    -type f ! -name '*.ttf' ! -name '*.png' ! -name '*.ico' ! -path './fonts/*.txt' \
    ! -name LocalizationTable.cpp ! -name tst_localization.cpp ! -name codespell-words.txt -print0)
# Names of two words and more, and the letter of an escape in front of a word, are no spelling.
codespell --builtin clear --ignore-regex '\b[A-Za-z][a-z0-9]*([A-Z][a-z0-9]*)+\b|\\[nrt]' \
    -I scripts/codespell-words.txt -- "${texts[@]}" || status=1
echo "codespell: ${#texts[@]} files"

licences=$(reuse lint 2>&1) || {
    printf '%s\n' "$licences"
    status=1
}
tail -n 1 <<<"$licences"
exit "$status"
