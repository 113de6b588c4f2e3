// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QImage>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVector>

/// Icons of one colour each, which nothing else on the screen has: by them a picture tells which
/// rows Spotlight shows, and in which order.
class SolidIcons
{
public:
    static constexpr int SizePx = 48; ///< of the image files

    struct Shown
    {
        QString name;
        QRect area; ///< on the screen
    };

    /// \param dataFolder folder for data in which the theme that every desktop has is begun.
    explicit SolidIcons(const QString& dataFolder);

    /// Adds an icon to the theme.
    /// \param context directory of the theme: "apps", "mimetypes" or "places".
    void addToTheme(const QString& name, const QString& context = QStringLiteral("apps"));
    /// Writes an icon as an image of its own.
    void addFile(const QString& name, const QString& path);

    /// What stands where the rows of Spotlight have their icons, from top to bottom. A row of which
    /// nearly nothing is to be seen is left out, like one with another icon than these.
    QVector<Shown> shownIn(const QImage& screen) const;
    QStringList namesIn(const QImage& screen) const;

private:
    QString m_theme;
    QHash<QRgb, QString> m_names;
};
