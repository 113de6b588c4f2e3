#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Makes the pictures of the user's guide: works Orlimo by keys and clicks on a screen of its own,
# first as somebody new, then with the example profile, and photographs every page.
#
#   scripts/make-guide-pictures.sh PROGRAM [DIRECTORY]
#
# The pictures go to docs/pictures/ if no directory is named. Works on a throw-away profile; the
# user's own is neither read nor written.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
source "$root/scripts/virtual-screen.sh"

program=$(realpath "$1")
pictures=${2:-$root/docs/pictures}
orlimo_pid=

# Where the windows are, with their shadows, on the screen of 1280 by 800 pixels.
home_area=617x616+331+132
settings_area=820x580+230+150
spotlight_area=584x520+348+200
spotlight_settings_area=584x560+348+180
tour_begin_button=740,485
spotlight_gear=860,272

end_orlimo() {
    [[ -n $orlimo_pid ]] || return 0
    kill "$orlimo_pid" 2>/dev/null || true
    wait "$orlimo_pid" 2>/dev/null || true
    orlimo_pid=
}

orlimo_is_shown() {
    kill -0 "$orlimo_pid" && visible_windows_of Orlimo
}

start_orlimo() {
    run_in_background "$program"
    orlimo_pid=$last_pid
    wait_until "Orlimo's window" orlimo_is_shown
    wait_until "the screen to come to rest" screen_stands_still
}

# Its card is a second window.
tour_is_shown() {
    (($(visible_windows_of Orlimo | wc -l) == 2)) && screen_stands_still
}

# Each key once the one before it has been dealt with.
press() { # key...
    local key
    for key in "$@"; do
        xdotool key --clearmodifiers "$key"
        wait_until "the screen to come to rest" screen_stands_still
    done
}

click() { # x,y
    xdotool mousemove "${1%,*}" "${1#*,}" click 1
    wait_until "the screen to come to rest" screen_stands_still
    xdotool mousemove 2 2
    wait_until "the screen to come to rest" screen_stands_still
}

picture() { # name, area
    photograph "$pictures/$1.png" "$2"
}

show_first_start() {
    start_orlimo
    picture welcome "$home_area"
    press Escape
    # The tour is dark, which takes a moment to come.
    wait_until "the tour" tour_is_shown
    click "$tour_begin_button"
    picture tour "$home_area"
    end_orlimo
}

show_home() {
    start_orlimo
    press Down
    picture home "$home_area"
    press space
    picture item-menu "$home_area"
    press Down Return
    picture editor "$home_area"
    press Escape Up Return Down Down Return
    picture order "$home_area"
    press Escape
}

show_settings() {
    press Tab
    picture settings-display "$settings_area"
    press Down
    picture settings-application "$settings_area"
    press Down
    picture settings-templates "$settings_area"
    press Down
    picture settings-about "$settings_area"
    press Escape Escape
}

show_spotlight() {
    press ctrl+alt+y
    xdotool type --delay 80 'ma'
    picture spotlight "$spotlight_area"
    press F4
    picture spotlight-limits "$spotlight_area"
    press Escape
    click "$spotlight_gear"
    picture spotlight-settings "$spotlight_settings_area"
    press Escape
    end_orlimo
}

trap end_virtual_screen EXIT
mkdir -p "$pictures"
pictures=$(realpath "$pictures")
start_virtual_screen
show_first_start
seed_profile
show_home
show_settings
show_spotlight
