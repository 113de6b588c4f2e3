#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Builds Qt for 64-bit Windows from Debian's source package of the Qt that this machine has, whose
# tools (moc, rcc, uic) take part in every cross-build and must be of the same version.
#
#   scripts/build-qt-windows.sh             builds what is missing and prints the directory
#   scripts/build-qt-windows.sh --where     only says which directory that would be
#
# A build that failed or was ended goes on where it stopped.
#
# Built once for each version and set of options, and kept under ${XDG_CACHE_HOME:-~/.cache}/orlimo.
# ORLIMO_QT_WIN64 in the environment names a ready-made one, and then nothing is built.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
use_neutral_locale

toolchain=$root/cmake/mingw-w64-x86_64.cmake
cache=${XDG_CACHE_HOME:-$HOME/.cache}/orlimo
done_mark=.orlimo-complete
unpacked_mark=.orlimo-unpacked

# Left out is what Orlimo doesn't use. Libraries come from Qt's own tree alone, lest a package that
# happens to be installed for the cross-compiler ends up among the imports.
options=(
    -DCMAKE_BUILD_TYPE=Release
    -DBUILD_SHARED_LIBS=ON
    -DQT_BUILD_EXAMPLES=OFF
    -DQT_BUILD_TESTS=OFF
    -DINPUT_opengl=no
    -DFEATURE_pkg_config=OFF
)
for feature in sql dbus vulkan printsupport concurrent xml tabletevent ssl schannel \
    system_zlib system_png system_jpeg system_pcre2 system_freetype system_harfbuzz \
    system_doubleconversion; do
    options+=("-DFEATURE_$feature=OFF")
done

host_source_version() {
    dpkg-query -W -f='${source:Version}' qt6-base-dev
}

host_cmake_dir() {
    dpkg-query -L qt6-base-dev | sed -n 's|/Qt6/Qt6Config\.cmake$||p'
}

# What the result depends on, besides the version: two sets of options don't share a directory.
options_key() {
    { printf '%s\n' "${options[@]}"; cat "$toolchain"; } | sha256sum | cut -c 1-12
}

prefix_of_this_build() {
    local version
    version=$(host_source_version)
    printf '%s/qt-win64-%s-%s\n' "$cache" "${version//[^A-Za-z0-9.+-]/_}" "$(options_key)"
}

# The package servers from which the machine has its Qt, one a line.
qt_sites() {
    LC_ALL=C apt-cache policy qt6-base-dev | awk '$2 ~ /^[a-z+]+:\/\// { print $2 }' | sort -u
}

# Prints the machine's own entries for a server, turned into entries for sources. All else of them
# stays as it is, the key that signs the lists above all.
source_entries() { # deb822|lines, site
    local files=()
    if [[ $1 == deb822 ]]; then
        mapfile -t files < <(find /etc/apt/sources.list.d -name '*.sources')
        [[ ${#files[@]} -gt 0 ]] || return 0
        awk -v RS= -v site="$2" 'index($0, site) {
            gsub(/\n#[^\n]*/, "")
            sub(/Types:[^\n]*/, "Types: deb-src")
            print $0 "\n"
        }' "${files[@]}"
    else
        mapfile -t files < <(find /etc/apt/sources.list /etc/apt/sources.list.d -name '*.list' 2>/dev/null)
        [[ ${#files[@]} -gt 0 ]] || return 0
        awk -v site="$2" '$1 == "deb" && index($0, site) { sub(/^deb/, "deb-src"); print }' "${files[@]}"
    fi
}

# Lists and downloads of its own: neither root nor the machine's package lists are needed.
private_apt() { # work directory, argument...
    local work=$1
    shift
    apt-get -q -o Dir::Etc::SourceList=/dev/null -o Dir::Etc::SourceParts="$work/sources" \
        -o Dir::State::Lists="$work/lists" -o Dir::Cache="$work/cache" \
        -o APT::Sandbox::User="$(id -un)" -o Acquire::Retries=3 "$@" </dev/null
}

fetch_sources() { # work directory, version
    local work=$1 version=$2 sites site
    mkdir -p "$work/sources" "$work/lists/partial" "$work/cache/archives/partial" "$work/download"
    sites=$(qt_sites)
    if [[ -z $sites ]]; then
        echo "build-qt-windows.sh: apt knows no server for qt6-base-dev; run apt-get update" >&2
        return 1
    fi
    for site in $sites; do
        source_entries deb822 "$site" >>"$work/sources/qt.sources"
        source_entries lines "$site" >>"$work/sources/qt.list"
    done
    private_apt "$work" update
    (cd "$work/download" && private_apt "$work" source --download-only "qt6-base=$version")
}

# Debian's patches come along: dpkg-source applies debian/patches/series as it unpacks.
unpack_sources() { # work directory
    dpkg-source --no-check -x "$1"/download/*.dsc "$1/src"
}

configure_and_build() { # work directory, prefix
    local work=$1 prefix=$2
    # The toolchain file that Qt installs goes on to this one, so a copy of it is kept beside it.
    mkdir -p "$prefix"
    cp "$toolchain" "$prefix/"
    cmake -S "$work/src" -B "$work/build" -G Ninja \
        -DCMAKE_TOOLCHAIN_FILE="$prefix/$(basename "$toolchain")" \
        -DCMAKE_INSTALL_PREFIX="$prefix" \
        -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="$(host_cmake_dir)" \
        "${options[@]}"
    cmake --build "$work/build" --parallel "$(nproc)"
    cmake --install "$work/build" --strip
}

# The licences under which the packed folder passes the libraries on.
keep_licences() { # work directory, prefix
    mkdir -p "$2/licences"
    cp "$1"/src/LICENSES/* "$2/licences/"
    cp "$1/src/debian/copyright" "$2/licences/qtbase-copyright.txt"
}

build() { # prefix
    local prefix=$1 version work=$1.build
    version=$(host_source_version)
    if [[ ! -f $work/$unpacked_mark ]]; then
        begin_phase "Sources of Qt $version"
        rm -rf "$work"
        fetch_sources "$work" "$version"
        unpack_sources "$work"
        touch "$work/$unpacked_mark"
    fi
    begin_phase "Build of Qt $version for Windows"
    configure_and_build "$work" "$prefix"
    keep_licences "$work" "$prefix"
    end_phase
    touch "$prefix/$done_mark"
    rm -rf "$work"
}

main() {
    if [[ -n ${ORLIMO_QT_WIN64:-} ]]; then
        if [[ ! -f $ORLIMO_QT_WIN64/lib/cmake/Qt6/qt.toolchain.cmake ]]; then
            echo "build-qt-windows.sh: no Qt in ORLIMO_QT_WIN64=$ORLIMO_QT_WIN64" >&2
            return 1
        fi
        printf '%s\n' "$ORLIMO_QT_WIN64"
        return 0
    fi

    local prefix
    prefix=$(prefix_of_this_build)
    if [[ ${1:-} != --where ]]; then
        mkdir -p "$cache"
        # Two builds at once would undo each other; the second finds the work done.
        exec {lock_fd}>"$cache/qt-win64.lock"
        flock "$lock_fd"
        # What the build says goes elsewhere: the output is the directory alone.
        [[ -f $prefix/$done_mark ]] || build "$prefix" >&2
    fi
    printf '%s\n' "$prefix"
}

main "$@"
