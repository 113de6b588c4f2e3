// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Localization.h"

#include <QTest>

/// Rows of a test that runs once in each language, which it fetches as `lang`.
inline void addLanguageRows()
{
    QTest::addColumn<Lang>("lang");
    for (const Lang lang : Tr::all())
        QTest::newRow(qPrintable(Tr::codeFor(lang))) << lang;
}
