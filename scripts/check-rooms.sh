#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Checks that knowledge flows downwards: a file of src/ includes only what lies on a lower floor or
# in its own room. Names file and line of every include that runs to a higher floor, or sideways to
# another room of the same one. Besides, each source file stands in a room that is known here, and
# no two headers share a name, because headers are included by their name alone.
#
#   scripts/check-rooms.sh                checks src/
#   scripts/check-rooms.sh --self-test    plants such slips in a copy of src/ and checks that each
#                                         is found

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"

# The floors from the ground up, as in ARCHITECTURE.md. A room has no subdirectories but those that
# stand here. Nobody but platform/linux itself may look into it, and the same for platform/windows.
floors='
0 platform
0 platform/linux
0 platform/windows
1 core
2 look
3 hotkeys
3 search
3 model
4 widgets
5 launch
6 spotlight
6 views
6 views/settings
7 main.cpp
'

# Prints what is wrong in the given copy of src/, and fails if anything is.
check_rooms() { # directory
    local sources includes
    sources=$(cd "$1" && find . -type f \( -name '*.cpp' -o -name '*.h' \) -printf '%P\n' | sort)
    # Both forms of an include: the compiler finds headers of ours in angle brackets as well.
    # shellcheck disable=SC2086 # names in src/ have no blanks
    includes=$(cd "$1" && grep -nHE '^[[:space:]]*#[[:space:]]*include\b' $sources)
    awk -v floors="$floors" '
        # A file of src/ itself, main.cpp alone, is a room by itself.
        function directory(path) { sub(/\/[^\/]*$/, "", path); return path }
        function file_name(path) { sub(/.*\//, "", path); return path }
        # The settings pages are a part of their window, so both are one room.
        function room(folder) { return folder == "views/settings" ? "views" : folder }
        # Where a file in the folder `from` must not include one in the folder `to`: the reason.
        function forbidden(from, to) {
            if (room(from) == room(to)) return ""
            if (to ~ /^platform\//) return "looks into"
            if (from ~ /^platform\// && to == "platform") return ""
            if (floor[to] > floor[from]) return "runs up to"
            if (floor[to] == floor[from]) return "runs sideways to"
            return ""
        }
        function complain(text) { print "check-rooms: " text; bad = 1 }

        BEGIN {
            n = split(floors, line, "\n")
            for (i = 1; i <= n; ++i)
                if (split(line[i], word, " ") == 2) floor[word[2]] = word[1]
        }
        FNR == 1 { ++part }
        $0 == "" { next }
        part == 1 { # the sources
            ++count
            if (!(directory($0) in floor)) {
                complain("src/" $0 ": stands in no known room")
                next
            }
            if ($0 !~ /\.h$/) next
            name = file_name($0)
            # Never both in one program.
            implementation = $0 ~ /^platform\/(linux|windows)\//
            if (name in folder_of && !(implementation && name in of_implementation))
                complain("src/" $0 ": src/" folder_of[name] " has a header of that name, too")
            if (implementation) of_implementation[name] = 1
            if (!(name in folder_of)) folder_of[name] = directory($0)
            folders_of[name] = folders_of[name] " " directory($0)
            next
        }
        { # the includes, as file:line:text
            split($0, field, ":")
            from = directory(field[1])
            place = "src/" field[1] ":" field[2]
            text = substr($0, length(field[1] field[2]) + 3)
            if (!match(text, /["<][^">]*[">]/)) {
                complain(place ": an include that names no file")
                next
            }
            quoted = substr(text, RSTART, 1) == "\""
            path = substr(text, RSTART + 1, RLENGTH - 2)
            name = file_name(path)
            if (!(name in folder_of)) {
                # What moc makes has no floor; all else in quotes is ours.
                if (quoted && name !~ /\.moc$/) complain(place ": no header " path " in src/")
                next
            }
            if (!(from in floor)) next # said above
            ++checked
            if (path != name) complain(place ": " path " is included by more than its name")
            # A name that both systems have means the file beside the one that includes it.
            to = index(folders_of[name] " ", " " from " ") ? from : folder_of[name]
            reason = forbidden(from, to)
            if (reason) complain(place ": " name " " reason " " to)
        }
        END {
            if (!checked) complain("found no includes")
            if (bad) exit 1
            print "rooms: " count " files, " checked " includes"
        }' <(printf '%s\n' "$sources") <(printf '%s\n' "$includes")
}

# Plants one slip in a fresh copy of src/ and checks that it, and nothing else, is told.
expect_found() { # complaint, file to append to or to make, line
    local copy=$work/src found
    rm -rf "$copy"
    cp -r src "$copy"
    mkdir -p "$(dirname "$copy/$2")"
    echo "$3" >>"$copy/$2"
    local expected=${1//LINE/$(wc -l <"$copy/$2")}
    if found=$(check_rooms "$copy"); then
        echo "check-rooms.sh: self-test: not found: $expected" >&2
        return 1
    elif [[ $found != "check-rooms: $expected" ]]; then
        printf 'check-rooms.sh: self-test: expected\n  %s\nbut found\n%s\n' "$expected" "$found" >&2
        return 1
    fi
}

self_test() {
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT
    expect_found 'src/core/Types.h:LINE: Theme.h runs up to look' \
        core/Types.h '#include "Theme.h"'
    expect_found 'src/platform/linux/X11.cpp:LINE: Types.h runs up to core' \
        platform/linux/X11.cpp '#include "Types.h"'
    expect_found 'src/widgets/CardShape.cpp:LINE: MainWindow.h runs up to views' \
        widgets/CardShape.cpp '#  include "MainWindow.h" // planted'
    expect_found 'src/search/WebQuery.cpp:LINE: HotkeyManager.h runs sideways to hotkeys' \
        search/WebQuery.cpp '#include "HotkeyManager.h"'
    expect_found 'src/views/MainWindow.cpp:LINE: SpotlightWindow.h runs sideways to spotlight' \
        views/MainWindow.cpp '#include <SpotlightWindow.h>'
    local into='X11.h looks into platform/linux'
    expect_found "src/platform/windows/Console.cpp:LINE: $into" \
        platform/windows/Console.cpp '#include "X11.h"'
    expect_found "src/views/MainWindow.cpp:LINE: $into" views/MainWindow.cpp '#include "X11.h"'
    expect_found 'src/main.cpp:LINE: platform/Display.h is included by more than its name' \
        main.cpp '#include "platform/Display.h"'
    expect_found 'src/main.cpp:LINE: no header Nowhere.h in src/' \
        main.cpp '#include "Nowhere.h"'
    expect_found 'src/main.cpp:LINE: an include that names no file' \
        main.cpp '#include SOME_MACRO'
    expect_found 'src/views/Theme.h: src/look has a header of that name, too' \
        views/Theme.h '#pragma once'
    expect_found 'src/platform/linux/Display.h: src/platform has a header of that name, too' \
        platform/linux/Display.h '#pragma once'
    expect_found 'src/cellar/Wine.cpp: stands in no known room' \
        cellar/Wine.cpp '#include "Types.h"'
    expect_found 'src/stray.cpp: stands in no known room' \
        stray.cpp '#include "Types.h"'
    echo "rooms: the self-test found every slip"
}

case ${1:-} in
    '') check_rooms src ;;
    --self-test) self_test ;;
    *)
        echo "check-rooms.sh: unknown argument '$1'" >&2
        exit 2
        ;;
esac
