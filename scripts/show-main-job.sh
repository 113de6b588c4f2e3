#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Shows Orlimo at work on a screen of its own and photographs it: another program has the keyboard,
# the hotkey calls the search window up, a few letters find a snippet, Enter puts it on the
# clipboard; then the same with a sum. Fails if the clipboard holds anything else at the end.
#
#   scripts/show-main-job.sh PROGRAM DIRECTORY_FOR_SCREENSHOTS
#
# Works on a throw-away profile; the user's own is neither read nor written.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
source "$root/scripts/virtual-screen.sh"

program=$(realpath "$1")
screenshots=$2
orlimo_pid=

orlimo_is_alive() {
    kill -0 "$orlimo_pid" 2>/dev/null
}

orlimo_is_shown() {
    orlimo_is_alive && visible_windows_of Orlimo
}

orlimo_is_hidden() {
    orlimo_is_alive && ! visible_windows_of Orlimo
}

# A window of another program, which has the keyboard when the hotkey is pressed.
show_other_program() {
    run_in_background xmessage -title 'Another program' -geometry 1000x520+140+120 -buttons '' \
        'Another program is at work here.'
    wait_until "the other program's window" visible_windows_of Xmessage
}

focus_program() { # window class
    xdotool windowactivate --sync "$(visible_windows_of "$1" | head -n 1)"
}

start_orlimo() {
    run_in_background "$program"
    orlimo_pid=$last_pid
    wait_until "Orlimo's main window" orlimo_is_shown
}

# For a moment after it was shown the main window ignores a loss of focus, as window managers give
# and take it while they place a window. So it is given the keyboard and loses it until it goes.
main_window_gives_way() {
    orlimo_is_hidden && return
    focus_program Orlimo
    focus_program Xmessage
    sleep 0.3
    orlimo_is_hidden
}

press_spotlight_hotkey() {
    xdotool key --clearmodifiers ctrl+alt+y
    wait_until "the search window after Ctrl+Alt+Y" orlimo_is_shown
}

# Presses Enter on the selected row and checks what that left on the clipboard.
launch_and_check_clipboard() { # expected text
    xdotool key Return
    wait_until "the search window to go" orlimo_is_hidden
    local text
    text=$(timeout 10 xclip -out -selection clipboard)
    printf 'On the clipboard:\n'
    printf '    %s\n' "${text//$'\n'/$'\n'    }"
    if [[ $text != "$1" ]]; then
        printf 'Expected:\n%s\n' "$1" >&2
        return 1
    fi
}

find_snippet() {
    press_spotlight_hotkey
    photograph "$screenshots/2-spotlight.png"
    xdotool type --delay 80 'ma'
    photograph "$screenshots/3-items.png"
    xdotool type --delay 80 'il sig'
    photograph "$screenshots/4-snippet.png"
    launch_and_check_clipboard $'Kind regards,\nMaya Example\nhttps://example.org/maya'
}

calculate() {
    press_spotlight_hotkey
    xdotool type --delay 80 '12*3'
    photograph "$screenshots/5-calculator.png"
    launch_and_check_clipboard 36
}

finish() {
    local status=$?
    set +e # whatever goes wrong here, the rest of it must still be done
    # Not after an interruption, which is no failure to look into.
    if [[ $status -gt 0 && $status -lt 128 && -n $screen_home ]]; then
        mkdir -p "$screenshots"
        import -window root -silent "$screenshots/failed.png" 2>/dev/null &&
            echo "The screen as it was: $screenshots/failed.png" >&2
        tail -n 20 "$screen_home"/*.log "$XDG_DATA_HOME/Orlimo/Orlimo/debug.log" >&2 2>/dev/null
    fi
    end_virtual_screen
    exit "$status"
}

main() {
    mkdir -p "$screenshots"
    rm -f "$screenshots"/*.png
    screenshots=$(realpath "$screenshots")
    start_virtual_screen
    seed_profile
    show_other_program
    start_orlimo
    photograph "$screenshots/1-main-window.png"
    wait_until "the main window to give way" main_window_gives_way
    find_snippet
    calculate
}

trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
main
