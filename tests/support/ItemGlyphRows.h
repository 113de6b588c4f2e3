// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QTest>

/// Rows of a test about the glyph of an item: columns "token", its icon string, "type" and "code",
/// the codepoint that is shown.
inline void addItemGlyphRows()
{
    QTest::addColumn<QString>("token");
    QTest::addColumn<QString>("type");
    QTest::addColumn<uint>("code");
    const auto add = [](const char* name, const char* token, const char* type, uint code) {
        QTest::newRow(name) << QString::fromLatin1(token) << QString::fromLatin1(type) << code;
    };
    add("URL", "", "URL", 0xE250);
    add("empty type", "", "", 0xE250);
    add("unknown type", "", "Teapot", 0xE250);
    add("Application", "", "Application", 0xE30C);
    add("File", "", "File", 0xE873);
    add("Bulk", "", "Bulk", 0xEBBD);
    add("Snippet", "", "Snippet", 0xF1C6);
    add("token", "glyph:ea5f", "Snippet", 0xEA5F);
    add("token of zero", "glyph:0", "File", 0xE873);
    add("broken token", "glyph:tea", "File", 0xE873);
    add("broken token, empty type", "glyph:", "", 0xE250);
}
