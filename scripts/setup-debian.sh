#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Installs what is missing of the named groups of packages; quick when nothing is.
#
#   scripts/setup-debian.sh [build] [run] [check] [windows] [bench]     (default: the first three)
#
# ORLIMO_SKIP_SETUP=1 takes the machine as it is, for systems whose packages have other names.

set -euo pipefail

build_packages=(g++ lld cmake ninja-build pkg-config qt6-base-dev
    libxcb1-dev libxcb-keysyms1-dev libxcb-xkb-dev libxcb-shape0-dev libxcb-xtest0-dev libxcb-shm0-dev
    libxkbcommon-dev libxkbcommon-x11-dev libfontconfig-dev)
# A screen without a monitor, what a desktop has around it, and what drives and photographs it.
# Qt's X11 plugin needs no line of its own: it comes with the library that qt6-base-dev pulls in.
run_packages=(xvfb openbox awesome i3-wm picom dbus libglib2.0-bin xdotool xclip x11-utils x11-xserver-utils
    x11-xkb-utils imagemagick fonts-noto-cjk)
# One version of the tools, because each lays code out and judges it a little differently. The cache
# of the compilers saves the checks from compiling what hasn't changed since their last run.
check_packages=(ccache clang-format-14 clang-tidy-14 clang-14 libclang-rt-14-dev
    shellcheck codespell reuse)
# The cross-compiler, what unpacks Qt's sources and builds them (Qt's own tools of the host among
# it), what runs and what packs the result.
windows_packages=(g++-mingw-w64-x86-64-posix dpkg-dev patch xz-utils perl
    g++ cmake ninja-build qt6-base-dev
    wine wine64 zip unzip)

# What the file index is measured beside; without them those lines are left out.
bench_packages=(fd-find plocate)

packages_of() {
    case $1 in
        build) printf '%s\n' "${build_packages[@]}" ;;
        run) printf '%s\n' "${run_packages[@]}" ;;
        check) printf '%s\n' "${check_packages[@]}" ;;
        windows) printf '%s\n' "${windows_packages[@]}" ;;
        bench) printf '%s\n' "${bench_packages[@]}" ;;
        *)
            echo "setup-debian.sh: unknown group '$1'; known: build run check windows bench" >&2
            return 2
            ;;
    esac
}

# Names those of its arguments that aren't installed.
missing_of() {
    local installed
    # dpkg-query fails as soon as one package is unknown, which is no failure here.
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    local package
    for package in "$@"; do
        grep -qxF "installed $package" <<<"$installed" || printf '%s\n' "$package"
    done
}

as_root() {
    if [[ $(id -u) -eq 0 ]]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "setup-debian.sh: needs root or sudo for: $*" >&2
        return 1
    fi
}

apt() {
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -y -q -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=300 "$@" </dev/null
}

main() {
    [[ $# -gt 0 ]] || set -- build run check
    [[ ${ORLIMO_SKIP_SETUP:-0} != 1 ]] || return 0

    local group names wanted=() missing=()
    for group in "$@"; do
        names=$(packages_of "$group")
        mapfile -t -O "${#wanted[@]}" wanted <<<"$names"
    done

    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        echo "This system has no apt. Orlimo needs what these Debian packages hold:" >&2
        printf '  %s\n' "${wanted[@]}" >&2
        echo "Install them, then start again with ORLIMO_SKIP_SETUP=1 in the environment." >&2
        return 1
    fi

    mapfile -t missing < <(missing_of "${wanted[@]}")
    [[ ${#missing[@]} -gt 0 ]] || return 0
    echo "Installing: ${missing[*]}"
    apt update
    apt install --no-install-recommends "${missing[@]}"
}

main "$@"
