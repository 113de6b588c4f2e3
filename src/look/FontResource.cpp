// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "FontResource.h"

#include <QFontDatabase>
#include <QResource>

int addFontResource(const QString& path)
{
    // Given a file name, Qt reads the file into memory, and again for each face it makes of it.
    // The icon fonts are nearly two megabytes each, and most of their glyphs are never drawn.
    const QResource resource(path);
    if (!resource.isValid())
        return -1;
    if (resource.compressionAlgorithm() != QResource::NoCompression)
        return QFontDatabase::addApplicationFontFromData(resource.uncompressedData());
    return QFontDatabase::addApplicationFontFromData(QByteArray::fromRawData(
        reinterpret_cast<const char*>(resource.data()), qsizetype(resource.size())));
}

void loadTextFont()
{
    const QString variableFont = QStringLiteral(":/fonts/PlusJakartaSans-VariableFont_wght.ttf");
    if (addFontResource(variableFont) == -1)
        qWarning("Gagal memuat font Plus Jakarta Sans, aplikasi akan fallback ke font sistem.");
    // Where Qt takes but one weight from the variable file, these bring the true ones.
    for (const char* weight : {"Medium", "SemiBold", "Bold"})
        addFontResource(
            QStringLiteral(":/fonts/PlusJakartaSans-%1.ttf").arg(QLatin1String(weight)));
}
