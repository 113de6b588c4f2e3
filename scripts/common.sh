# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
#
# What the scripts share. To be sourced; gives `root`, the top of the checkout.

# shellcheck disable=SC2034 # for those that source this
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# How many tests run side by side: most of them wait, for timers and for other processes. Under Wine
# each start costs more of a processor.
# shellcheck disable=SC2034
test_jobs=$((3 * $(nproc)))
# shellcheck disable=SC2034
wine_test_jobs=$((2 * $(nproc)))

phase_name=
phase_start=0

# Ends the phase that is running, if any, and says how long it took.
end_phase() {
    [[ -n $phase_name ]] || return 0
    printf '<== [%s] %s: %d s\n' "$(date +%T)" "$phase_name" $((SECONDS - phase_start))
    phase_name=
}

# Begins a phase of the given name; the one before it ends here.
begin_phase() {
    end_phase
    phase_name=$1
    phase_start=$SECONDS
    printf '==> [%s] %s\n' "$(date +%T)" "$phase_name"
}

# Builds and tests behave alike whatever language the machine speaks. Not for starting the program:
# the user's own locale is part of what it should see.
use_neutral_locale() {
    unset LANGUAGE
    export LC_ALL=C.UTF-8
}

# Tests and checks bring their own screen and their own bus, so that a slip of theirs can't reach
# the windows, the clipboard or the settings of whoever runs them.
leave_desktop_session() {
    unset DISPLAY WAYLAND_DISPLAY XAUTHORITY SESSION_MANAGER DBUS_SESSION_BUS_ADDRESS
    unset QT_QPA_PLATFORM QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE QT_SCALE_FACTOR
    unset XDG_CURRENT_DESKTOP XDG_SESSION_TYPE
}

# Objects that were compiled before, in this checkout or another, aren't compiled again. Takes effect
# on build trees that are configured from now on; nothing changes where there is no ccache.
use_compiler_cache() {
    command -v ccache >/dev/null || return 0
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
    export CCACHE_DIR=${XDG_CACHE_HOME:-$HOME/.cache}/orlimo/ccache CCACHE_MAXSIZE=3G
    # Whichever directory the checkout lies in.
    export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
    # What ccache wants for precompiled headers, which are as new as the checkout.
    export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
}
