# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
#
# A desktop without a monitor: X server, window manager, compositor, message bus and a home of its
# own. To be sourced by a script run with `set -euo pipefail`; afterwards
#
#   start_virtual_screen     sets DISPLAY, DBUS_SESSION_BUS_ADDRESS, HOME and XDG_*
#   end_virtual_screen       ends all that was started and removes the home; safe to call twice
#   photograph FILE [PART]   waits until nothing moves on it and makes a picture
#
# The caller calls the second from an EXIT trap, so that nothing outlives it. A program that it
# starts itself goes through `run_in_background`, which sets last_pid, to be ended along with the
# rest.

screen_home=
screen_pids=()
last_pid=

# Starts a command whose output goes to a log in the screen's home.
run_in_background() {
    "$@" >>"$screen_home/$(basename "$1").log" 2>&1 </dev/null &
    last_pid=$!
    screen_pids+=("$last_pid")
}

# Waits until a command succeeds; ends the script when it hasn't for 30 seconds.
wait_until() { # what, command...
    local what=$1 deadline=$((SECONDS + 30))
    shift
    until "$@" >/dev/null 2>&1; do
        if ((SECONDS >= deadline)); then
            echo "Gave up waiting for $what." >&2
            return 1
        fi
        sleep 0.1
    done
}

# Sets first_line to the first line that a server writes to the pipe of the given name.
read_first_line() { # what, pipe
    first_line=
    # Opened for reading and writing, so that neither end blocks if the server dies at once.
    local pipe_fd
    exec {pipe_fd}<>"$2"
    if ! IFS= read -r -t 30 first_line <&"$pipe_fd"; then
        echo "$1 did not start:" >&2
        cat "$screen_home"/*.log >&2
        return 1
    fi
    exec {pipe_fd}>&-
}

make_private_home() {
    screen_home=$(mktemp -d "${TMPDIR:-/tmp}/orlimo-screen.XXXXXX")
    export HOME=$screen_home/home
    export XDG_DATA_HOME=$HOME/.local/share XDG_CONFIG_HOME=$HOME/.config
    export XDG_CACHE_HOME=$HOME/.cache XDG_STATE_HOME=$HOME/.local/state
    # Lock and socket of the program lie there: those of whoever sits at the machine stay untouched.
    export XDG_RUNTIME_DIR=$screen_home/run
    mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_STATE_HOME"
    mkdir -m 700 "$XDG_RUNTIME_DIR"
}

start_x_server() {
    local pipe=$screen_home/display
    mkfifo "$pipe"
    # The server is given a descriptor of the pipe, on which it writes the number it has found free.
    local display_fd
    exec {display_fd}<>"$pipe"
    run_in_background Xvfb -displayfd "$display_fd" -screen 0 1280x800x24 -nolisten tcp -noreset
    read_first_line Xvfb "$pipe"
    exec {display_fd}>&-
    export DISPLAY=:$first_line
}

start_message_bus() {
    local pipe=$screen_home/bus
    mkfifo "$pipe"
    local bus_fd
    exec {bus_fd}<>"$pipe"
    run_in_background dbus-daemon --session --nofork --nopidfile --print-address="$bus_fd"
    read_first_line dbus-daemon "$pipe"
    exec {bus_fd}>&-
    export DBUS_SESSION_BUS_ADDRESS=$first_line
}

window_manager_is_up() {
    xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'
}

# The compositor makes this window when it takes the screen over.
compositor_is_up() {
    xwininfo -name picom
}

start_virtual_screen() {
    leave_desktop_session
    make_private_home
    start_message_bus
    start_x_server
    run_in_background openbox
    wait_until "the window manager" window_manager_is_up
    run_in_background picom --backend xrender --config /dev/null
    wait_until "the compositor" compositor_is_up
}

end_virtual_screen() {
    local i
    # Last come, first gone: programs go before the server whose loss they would complain about.
    for ((i = ${#screen_pids[@]} - 1; i >= 0; i--)); do
        kill "${screen_pids[i]}" 2>/dev/null || true
        wait "${screen_pids[i]}" 2>/dev/null || true
    done
    screen_pids=()
    [[ -z $screen_home ]] || rm -rf "$screen_home"
    screen_home=
}

# Gives the profile of a made-up user to the program that is started next.
seed_profile() {
    local data_dir=$XDG_DATA_HOME/Orlimo/Orlimo
    mkdir -p "$data_dir"
    # shellcheck disable=SC2154 # from common.sh, which the caller has sourced
    cp "$root/scripts/example-profile/"{data.json,settings.ini} "$data_dir/"
}

visible_windows_of() { # window class
    xdotool search --onlyvisible --class "^$1\$"
}

picture_sum() {
    import -window root -silent rgb:- | cksum
}

# True when nothing has moved on the screen for a moment. The cursor of a text field blinks more
# slowly than this looks.
screen_stands_still() {
    local before
    before=$(picture_sum)
    sleep 0.2
    [[ $(picture_sum) == "$before" ]]
}

photograph() { # file, part of the screen as WIDTHxHEIGHT+X+Y; all of it if none is given
    local part=()
    [[ -z ${2:-} ]] || part=(-crop "$2" +repage)
    wait_until "the screen to come to rest" screen_stands_still
    import -window root -silent png:- | convert - "${part[@]}" -strip "$1"
    echo "$1"
}
