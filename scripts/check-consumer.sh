#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
# Adds the project to another build, which knows nothing of Qt or of C++20, and checks that the
# library works there and brings its resources with it.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
cd "$root"

work=$root/build/consumer
mkdir -p "$work"
use_neutral_locale

cat > "$work/CMakeLists.txt" <<EOT
cmake_minimum_required(VERSION 3.25)
project(Consumer LANGUAGES CXX)
set(BUILD_TESTING OFF)
add_subdirectory("$root" orlimo)
add_executable(consumer main.cpp)
target_link_libraries(consumer PRIVATE orlimo_lib)
EOT
cat > "$work/main.cpp" <<'EOT'
#include "Calculator.h"

#include <QFile>

int main()
{
    const bool hasFont = QFile::exists(QStringLiteral(":/fonts/MaterialSymbolsRounded-600.ttf"));
    const bool calculates = Calculator::evaluate(QStringLiteral("12*3")).value == u"36";
    return hasFont && calculates ? 0 : 1;
}
EOT
# What is asked is whether it compiles and links there, so neither optimised code nor debug information
# is made, which leaves a fraction of the time of any other build.
cmake -S "$work" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE= -DCMAKE_CXX_FLAGS=-O0
cmake --build "$work/build" --parallel "$(nproc)" --target consumer
"$work/build/consumer"
if [[ -d $work/build/orlimo/tests ]]; then
    echo "check-consumer.sh: tests are configured although BUILD_TESTING is off" >&2
    exit 1
fi
