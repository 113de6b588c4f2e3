#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Cross-builds Orlimo for 64-bit Windows and packs it with all it needs:
#
#   build/windows/Orlimo/                  the folder that runs anywhere
#   build/windows/Orlimo-<version>-win64.zip
#
#   scripts/build-windows.sh [target...]   (default: everything, the tests too)
#
# The first run builds Qt as well, which takes a while (see scripts/build-qt-windows.sh).

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"

build_dir=build/windows
folder=$build_dir/Orlimo

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

copy_licences() {
    local licences=$folder/licences
    mkdir -p "$licences/qt"
    cp LICENSE "$licences/Orlimo.txt"
    cp fonts/*.txt "$licences/"
    cp "$ORLIMO_QT_WIN64"/licences/* "$licences/qt/"
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

compress() { # version
    local archive=Orlimo-$1-win64.zip
    rm -f "$build_dir"/Orlimo-*-win64.zip
    (cd "$build_dir" && zip -q -r -X -9 "$archive" Orlimo)
    du -sh "$folder" "$build_dir/$archive"
}

version_of_build() {
    sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build_dir/CMakeCache.txt"
}

begin_phase "Set-up"
scripts/setup-debian.sh windows
use_neutral_locale
ORLIMO_QT_WIN64=$(scripts/build-qt-windows.sh)
export ORLIMO_QT_WIN64

begin_phase "Configure (windows)"
cmake --preset windows

begin_phase "Build (windows)"
targets=()
[[ $# -eq 0 ]] || targets=(--target "$@")
cmake --build --preset windows --parallel "$(nproc)" "${targets[@]}"

begin_phase "Pack"
pack
scripts/check-windows-folder.sh "$folder"
compress "$(version_of_build)"
end_phase
