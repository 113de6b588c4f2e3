#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Cross-builds Orlimo for 64-bit Windows and packs it with all it needs:
#
#   build/windows/Orlimo/                  the folder, which needs nothing but Windows 10 or later
#   build/windows/Orlimo-<version>-win64.zip
#   build/windows/unpacked/Orlimo/         what is in the zip, checked and for the tests to start
#
#   scripts/build-windows.sh [target...]   (default: everything, the tests too)
#
# The program itself is built in any case. The first run builds Qt as well, which takes a while (see
# scripts/build-qt-windows.sh).

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"

build_dir=build/windows
folder=$build_dir/Orlimo
unpacked=$build_dir/unpacked

qt_libraries=(Qt6Core Qt6Gui Qt6Network Qt6Widgets)
compiler_libraries=(libgcc_s_seh-1 libstdc++-6 libwinpthread-1)
# Qt loads these by itself, so no import table names them.
qt_plugins=(platforms/qwindows imageformats/qgif imageformats/qico imageformats/qjpeg
    styles/qwindowsvistastyle)

copy_libraries() {
    local library
    for library in "${qt_libraries[@]}"; do
        cp "$ORLIMO_QT_WIN64/bin/$library.dll" "$folder/"
    done
    for library in "${compiler_libraries[@]}"; do
        cp "$(x86_64-w64-mingw32-g++-posix -print-file-name="$library.dll")" "$folder/"
    done
    for library in "${qt_plugins[@]}"; do
        mkdir -p "$folder/$(dirname "$library")"
        cp "$ORLIMO_QT_WIN64/plugins/$library.dll" "$folder/$(dirname "$library")/"
    done
    # Qt looks for its plugins here and nowhere else, whatever else is installed.
    printf '[Paths]\nPrefix = .\nPlugins = .\n' >"$folder/qt.conf"
}

# A Qt that scripts/build-qt-windows.sh hasn't built may come without them.
copy_qt_licences() { # directory
    local missing='The Qt in this folder came without its licences. They belong in here before it is passed on.'
    if [[ -d $ORLIMO_QT_WIN64/licences ]]; then
        cp "$ORLIMO_QT_WIN64"/licences/* "$1/"
        return
    fi
    printf '%s\n' "$missing" >"$1/MISSING.txt"
    echo "build-windows.sh: $1: $missing" >&2
}

copy_licences() {
    local licences=$folder/licences
    mkdir -p "$licences/qt"
    cp LICENSE "$licences/Orlimo.txt"
    cp fonts/*.txt "$licences/"
    copy_qt_licences "$licences/qt"
    cp /usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright "$licences/gcc-runtime.txt"
    cp /usr/share/doc/mingw-w64-x86-64-dev/copyright "$licences/mingw-w64.txt"
    cp packaging/windows/licences.txt "$licences/README.txt"
}

pack() {
    rm -rf "$folder"
    mkdir -p "$folder"
    cp "$build_dir/src/Orlimo.exe" "$folder/"
    copy_libraries
    copy_licences
    find "$folder" \( -name '*.exe' -o -name '*.dll' \) -exec x86_64-w64-mingw32-strip {} +
}

compress() { # zip
    rm -f "$build_dir"/Orlimo-*-win64.zip
    (cd "$build_dir" && zip -q -r -X -9 "$1" Orlimo)
    du -sh "$folder" "$build_dir/$1"
}

# The zip is what people get, so what is checked and tested comes out of it.
unpack() { # zip
    rm -rf "$unpacked"
    mkdir "$unpacked"
    unzip -q "$build_dir/$1" -d "$unpacked"
    diff -r "$folder" "$unpacked/Orlimo"
}

from_cache() { # variable
    sed -n "s/^$1:[A-Z]*=//p" "$build_dir/CMakeCache.txt"
}

# A build tree keeps the Qt that it was first configured with, whatever it is told later.
configure() {
    local fresh=()
    if [[ -f $build_dir/CMakeCache.txt ]]; then
        [[ $(from_cache CMAKE_TOOLCHAIN_FILE) == "$ORLIMO_QT_WIN64"/* ]] || fresh=(--fresh)
    fi
    cmake --preset windows "${fresh[@]}"
}

begin_phase "Set-up"
scripts/setup-debian.sh windows
use_neutral_locale
ORLIMO_QT_WIN64=$(scripts/build-qt-windows.sh)
export ORLIMO_QT_WIN64

begin_phase "Configure (windows)"
configure

begin_phase "Build (windows)"
targets=()
[[ $# -eq 0 ]] || targets=(--target orlimo "$@")
cmake --build --preset windows --parallel "$(nproc)" "${targets[@]}"

begin_phase "Pack"
pack
archive=Orlimo-$(from_cache CMAKE_PROJECT_VERSION)-win64.zip
compress "$archive"
unpack "$archive"
scripts/check-windows-folder.sh "$unpacked/Orlimo"
scripts/check-hardening.sh "$unpacked/Orlimo/Orlimo.exe"
end_phase
