# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
#
# A Windows profile that is made for one run and thrown away: the registry, the users' folders and
# that of all users. The system's own files and those of programs (C:\windows, C:\Program Files) are
# links to ones that all runs share, so nothing that runs here may write there.
#
# To be sourced; afterwards
#
#   start_wine_profile [directory...]    sets WINEPREFIX and all else that `wine` looks at; programs
#                                        find the libraries in the given directories
#   end_wine_profile                     ends what still runs in it and removes it
#
# The caller calls the second from an EXIT trap.

wine_run_directory=

# A new profile takes seconds and most of a gigabyte, so each run gets a copy of what is its own from
# one that was made before. Another version of Wine, or of what makes it here, takes a new one.
wine_template() {
    local version recipe
    version=$(WINEDEBUG=-all wine --version)
    recipe=$(declare -f export_wine_environment replace_links_of_users make_wine_template |
        sha256sum | cut -c 1-12)
    printf '%s/orlimo/%s-%s\n' "${XDG_CACHE_HOME:-$HOME/.cache}" \
        "${version//[^A-Za-z0-9.+-]/_}" "$recipe"
}

# What a program sees of this machine is the same everywhere; dialogs that offer to download parts
# of Wine don't come, and nothing is put into the menus of whoever runs this.
export_wine_environment() { # home
    export HOME=$1 LC_ALL=C.UTF-8 WINEARCH=win64
    # Unlike the world's time, so that a mix-up of the two shows.
    export TZ=Asia/Tokyo
    export WINEDEBUG=${WINEDEBUG:--all}
    export WINEDLLOVERRIDES='winemenubuilder.exe,mscoree,mshtml='
    unset WINEPATH XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME XDG_RUNTIME_DIR
    # Wine keeps variables of Qt from its programs, as if they were meant for the desktop around it,
    # unless they come with this prefix, which it takes off.
    local name
    for name in "${!QT_@}"; do
        export "WINE$name=${!name}"
    done
}

# Wine links these to the folders of the one who runs it, where a test has no business.
replace_links_of_users() { # drive
    local link
    for link in "$1"/users/*/*; do
        [[ -L $link ]] || continue
        rm "$link"
        mkdir "$link"
    done
}

make_wine_template() ( # directory; in a shell of its own, for the environment
    rm -rf "$1" "$1.new"
    mkdir -p "$1.new/home"
    export_wine_environment "$1.new/home"
    # shellcheck disable=SC2030 # meant to end with that shell
    export WINEPREFIX=$1.new/prefix
    wine wineboot --init >/dev/null 2>&1
    # Where no panel takes tray icons, Wine shows them in a window of its own, which takes the
    # keyboard from the program that has just started. On Windows no icon does that.
    wine reg add 'HKCU\Software\Wine\X11 Driver' /v ShowSystray /d N /f >/dev/null
    wineserver -w
    replace_links_of_users "$WINEPREFIX/drive_c"
    mv "$1.new" "$1"
)

copy_wine_template() { # template, prefix
    local entry
    mkdir -p "$2/drive_c"
    cp -a "$1"/*.reg "$1/.update-timestamp" "$1/dosdevices" "$2/"
    for entry in "$1"/drive_c/*; do
        case $entry in
            */users | */ProgramData) cp -a "$entry" "$2/drive_c/" ;;
            *) ln -s "$entry" "$2/drive_c/" ;;
        esac
    done
}

# Where the cross-compiler has the libraries that its programs load.
compiler_library_directories() {
    local library
    for library in libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll; do
        dirname "$(realpath "$(x86_64-w64-mingw32-g++-posix -print-file-name="$library")")"
    done | sort -u
}

start_wine_profile() {
    local template lock_fd directory
    template=$(wine_template)
    mkdir -p "$(dirname "$template")"
    exec {lock_fd}>"$template.lock"
    flock "$lock_fd"
    [[ -d $template ]] || make_wine_template "$template"
    # Closed before anything of Wine's starts that would inherit it and keep the lock.
    exec {lock_fd}>&-

    wine_run_directory=$(mktemp -d "${TMPDIR:-/tmp}/orlimo-wine.XXXXXX")
    mkdir "$wine_run_directory/home"
    export_wine_environment "$wine_run_directory/home"
    # shellcheck disable=SC2031 # nothing of the other shell's is wanted
    export WINEPREFIX=$wine_run_directory/prefix
    copy_wine_template "$template/prefix" "$WINEPREFIX"
    for directory in "$@"; do
        WINEPATH="${WINEPATH:+$WINEPATH;}Z:${directory//\//\\}"
    done
    export WINEPATH
}

end_wine_profile() {
    [[ -n $wine_run_directory ]] || return 0
    wineserver -k || true # fails if all has ended already
    wineserver -w
    rm -rf "$wine_run_directory"
    wine_run_directory=
}
