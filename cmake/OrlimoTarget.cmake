# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT

# Warnings, sanitizers and definitions that every target of ours is built with.
add_library(orlimo_options INTERFACE)

target_compile_definitions(orlimo_options INTERFACE
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(MSVC)
    # Its system headers define min() and max(), others leave these to the standard library.
    target_compile_definitions(orlimo_options INTERFACE NOMINMAX)
    target_compile_options(orlimo_options INTERFACE /W4 /utf-8 /permissive-
        $<$<BOOL:${ORLIMO_WERROR}>:/WX>)
else()
    target_compile_options(orlimo_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast
        -Woverloaded-virtual -Wnon-virtual-dtor
        $<$<BOOL:${ORLIMO_WERROR}>:-Werror>)
endif()

if(ORLIMO_SANITIZE)
    target_compile_options(orlimo_options INTERFACE
        -fsanitize=${ORLIMO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(orlimo_options INTERFACE -fsanitize=${ORLIMO_SANITIZE})
    # Several times as fast as the usual one where so many executables hold the whole library.
    find_program(ORLIMO_LLD NAMES ld.lld ld.lld-14)
    if(ORLIMO_LLD)
        target_link_options(orlimo_options INTERFACE -fuse-ld=lld)
    endif()
endif()

# Headers that most sources include, directly or not; parsed once for the library and once for the
# tests. A source includes what it needs all the same: CMAKE_DISABLE_PRECOMPILE_HEADERS=ON builds
# without them, and so does clang-tidy (scripts/tidy.sh).
set(orlimo_common_headers
    <algorithm> <array> <functional> <memory> <optional> <utility> <vector>
    <QApplication> <QByteArray> <QColor> <QDateTime> <QDir> <QElapsedTimer> <QFile> <QFileInfo>
    <QHash> <QIcon> <QJsonArray> <QJsonDocument> <QJsonObject> <QKeyEvent> <QLabel> <QLineEdit>
    <QMouseEvent> <QPainter> <QPainterPath> <QPointer> <QPushButton> <QRegularExpression> <QSet>
    <QSettings> <QStandardPaths> <QString> <QStringList> <QTimer> <QUrl> <QVBoxLayout> <QVariant>
    <QVector> <QWidget>)
